// What every test stands on: a folder of its own, a private registry, a clock that it sets; and of
// the machine layer what tests of any room look at.

#ifndef WEXPOL_TESTS_SUPPORT_TEST_ENVIRONMENT_H_
#define WEXPOL_TESTS_SUPPORT_TEST_ENVIRONMENT_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/clock_source.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"

// Stands still until it is moved. Starts at noon of Wednesday, 13 March 2024; local time is UTC.
class FakeClock : public wexpol::Clock {
 public:
  FakeClock() { SetLocal(2024, 3, 13, 12); }

  void SetUtc(std::int64_t seconds) { utc_ = wexpol::UnixToFileTime(seconds); }
  void SetLocal(int year, int month, int day, int hour, int minute = 0, int second = 0,
                int millisecond = 0);
  // Ticks go along.
  void Advance(std::int64_t seconds);
  // Seconds that local time is ahead of UTC.
  void SetLocalOffset(std::int64_t seconds) { offset_ = seconds * wexpol::kFileTimePerSecond; }
  void SetTickCount(std::uint32_t ticks) { ticks_ = ticks; }

  std::int64_t UtcFileTime() const override { return utc_; }
  std::int64_t UtcToLocal(std::int64_t utc_file_time) const override {
    return utc_file_time + offset_;
  }
  std::uint32_t TickCount() const override { return ticks_; }

 private:
  std::int64_t utc_ = 0;
  std::int64_t offset_ = 0;
  std::uint32_t ticks_ = 0;
};

// A member of a fixture. While it lives, file locations, registry and shared objects are its own
// and empty, and the clock is `clock()`. Its end removes them all, and fails the test when a file
// of the folder is still open.
class TestEnvironment {
 public:
  TestEnvironment();
  ~TestEnvironment();
  TestEnvironment(const TestEnvironment&) = delete;
  TestEnvironment& operator=(const TestEnvironment&) = delete;

  const std::wstring& folder() const { return folder_; }
  std::wstring PathOf(const wchar_t* name) const;
  FakeClock& clock() { return clock_; }

 private:
  std::wstring folder_;
  FakeClock clock_;
};

// Several answers as one text, so that one comparison shows which of them differs. The order in
// which they are asked for is not defined.
template <typename... Answers>
std::string Join(const Answers&... answers) {
  std::ostringstream text;
  const char* separator = "";
  ((text << std::exchange(separator, " ") << answers), ...);
  return text.str();
}

// A file of the source tree, by its path there.
std::wstring SourcePath(const std::string& path);

// The bytes of a file in the folder or elsewhere; a missing file is empty.
std::string ReadBytes(const std::wstring& path);
void WriteBytes(const std::wstring& path, const std::string& bytes);

#endif  // WEXPOL_TESTS_SUPPORT_TEST_ENVIRONMENT_H_
