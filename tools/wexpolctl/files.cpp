#include "tools/wexpolctl/files.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "wexpol/platform/clock.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"

namespace wexpolctl {
namespace {

namespace fs = std::filesystem;

fs::path FromUtf8(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

bool MoveSideFiles(const std::wstring& from, const std::wstring& to) {
  for (const wchar_t* end : wexpol::kSideFiles) {
    if (wexpol::FileExists(from + end) && !wexpol::RenameFile(from + end, to + end)) return false;
  }
  return true;
}

// To a name that is free; what has been renamed by a failure is named back.
bool MoveDatabase(const std::wstring& from, const std::wstring& to) {
  if (MoveSideFiles(from, to) && wexpol::MoveFileOver(from, to)) return true;
  MoveSideFiles(to, from);
  return false;
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
  for (const wchar_t* end : wexpol::kSideFiles) wexpol::RemoveFile(database + end);
}

bool ReplaceDatabase(const std::wstring& fresh, const std::wstring& database,
                     const std::wstring& aside) {
  const bool existed = wexpol::FileExists(database);
  if (existed && !MoveDatabase(database, aside)) return false;
  if (!existed) RemoveSideFiles(database);  // Of a file that is gone.
  if (MoveDatabase(fresh, database)) return true;
  if (existed) MoveDatabase(aside, database);
  return false;
}

std::wstring UnusedName(const std::wstring& path) {
  std::wstring name = path;
  const auto is_used = [&] {
    return wexpol::FileExists(name) ||
           std::any_of(std::begin(wexpol::kSideFiles), std::end(wexpol::kSideFiles),
                       [&](const wchar_t* end) { return wexpol::FileExists(name + end); });
  };
  for (int number = 2; is_used(); ++number) name = path + L'.' + std::to_wstring(number);
  return name;
}

TemporaryDatabase::TemporaryDatabase(std::wstring path) : path_(std::move(path)) { Remove(); }

void TemporaryDatabase::Remove() {
  wexpol::RemoveFile(path_);
  RemoveSideFiles(path_);
}

}  // namespace wexpolctl
