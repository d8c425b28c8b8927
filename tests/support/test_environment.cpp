#include "tests/support/test_environment.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "wexpol/platform/system_types.h"

namespace {

std::filesystem::path SystemPath(const std::wstring& path) {
  const std::string utf8 = wexpol::WideToUtf8(path);
  return std::u8string(utf8.begin(), utf8.end());
}

std::wstring NewFolder() {
  std::random_device random;
  for (;;) {
    const auto folder = std::filesystem::temp_directory_path() /
                        ("wexpol-" + std::to_string(random()) + std::to_string(random()));
    const std::u8string utf8 = folder.u8string();
    if (std::filesystem::create_directory(folder)) {
      return wexpol::Utf8ToWide({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
    }
  }
}

}  // namespace

void FakeClock::SetLocal(int year, int month, int day, int hour, int minute, int second,
                         int millisecond) {
  const auto narrow = [](int value) { return static_cast<std::uint16_t>(value); };
  const SYSTEMTIME local = {narrow(year),   narrow(month),      0,
                            narrow(day),    narrow(hour),       narrow(minute),
                            narrow(second), narrow(millisecond)};
  std::int64_t file_time = 0;
  EXPECT_TRUE(wexpol::ToFileTime(local, &file_time));
  utc_ = file_time - offset_;
}

void FakeClock::Advance(std::int64_t seconds) {
  utc_ += seconds * wexpol::kFileTimePerSecond;
  ticks_ += static_cast<std::uint32_t>(seconds * 1000);
}

TestEnvironment::TestEnvironment() : folder_(NewFolder()) {
  wexpol::RedirectMachine(folder_);
  wexpol::SetClockForTesting(&clock_);
}

TestEnvironment::~TestEnvironment() {
  wexpol::DeleteRedirectedRegistry();
  wexpol::RedirectMachine(L"");
  wexpol::SetClockForTesting(nullptr);
  std::error_code error;
  std::filesystem::remove_all(SystemPath(folder_), error);
  EXPECT_FALSE(error) << "a file of the test is still open: " << error.message();
}

std::wstring TestEnvironment::PathOf(const wchar_t* name) const {
  return wexpol::JoinPath(folder_, name);
}

std::wstring SourcePath(const std::string& path) {
  return wexpol::Utf8ToWide(WEXPOL_SOURCE_DIR "/" + path);
}

std::string ReadBytes(const std::wstring& path) {
  std::ifstream file(SystemPath(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void WriteBytes(const std::wstring& path, const std::string& bytes) {
  std::ofstream(SystemPath(path), std::ios::binary) << bytes;
}
