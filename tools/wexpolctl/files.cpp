#include "tools/wexpolctl/files.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <system_error>

#include "wexpol/platform/clock.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

namespace fs = std::filesystem;

constexpr std::array<const wchar_t*, 3> kSideFiles = {L"-wal", L"-shm", L"-journal"};

fs::path FromUtf8(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

bool Rename(const std::wstring& from, const std::wstring& to) {
  std::error_code error;
  fs::rename(ToPath(from), ToPath(to), error);
  return !error;
}

}  // namespace

fs::path ToPath(const std::wstring& path) { return FromUtf8(wexpol::WideToUtf8(path)); }

std::wstring FromPath(const fs::path& path) {
  const std::u8string utf8 = path.u8string();
  return wexpol::Utf8ToWide(std::string(utf8.begin(), utf8.end()));
}

std::wstring AbsolutePath(const std::string& utf8) {
  std::error_code error;
  fs::path path = fs::absolute(FromUtf8(utf8), error).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();
  return FromPath(path.make_preferred());
}

std::wstring BackupPathOf(const std::wstring& database) {
  return FromPath(ToPath(database).replace_extension(".bak"));
}

std::optional<std::int64_t> AgeOf(const std::wstring& path) {
  std::error_code error;
  const auto written = fs::last_write_time(ToPath(path), error);
  if (error) return std::nullopt;
  const auto since_1970 = std::chrono::file_clock::to_sys(written).time_since_epoch();
  const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(since_1970).count();
  return std::max<std::int64_t>(0, wexpol::NowUtc() - seconds);
}

std::optional<std::string> ReadFile(const std::wstring& path) {
  std::ifstream file(ToPath(path), std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file.good() && !file.eof()) return std::nullopt;
  return text;
}

bool WriteFile(const std::wstring& path, const std::string& text) {
  std::ofstream file(ToPath(path), std::ios::binary);
  file << text;
  return file.flush().good();
}

void RemoveSideFiles(const std::wstring& database) {
  std::error_code error;
  for (const wchar_t* suffix : kSideFiles) fs::remove(ToPath(database + suffix), error);
}

bool MoveDatabase(const std::wstring& from, const std::wstring& to) {
  if (!Rename(from, to)) return false;
  RemoveSideFiles(to);
  for (const wchar_t* suffix : kSideFiles) Rename(from + suffix, to + suffix);
  return true;
}

}  // namespace wexpolctl
