#include "wexpol/platform/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/system_types.h"

namespace {

SYSTEMTIME Time(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                int milliseconds = 0, int day_of_week = 0) {
  const auto narrow = [](int value) { return static_cast<std::uint16_t>(value); };
  return {narrow(year), narrow(month),  narrow(day_of_week), narrow(day),
          narrow(hour), narrow(minute), narrow(second),      narrow(milliseconds)};
}

auto Fields(const SYSTEMTIME& time) {
  return std::tuple(+time.wYear, +time.wMonth, +time.wDayOfWeek, +time.wDay, +time.wHour,
                    +time.wMinute, +time.wSecond, +time.wMilliseconds);
}

TEST(ClockTest, FileTimesAndCalendarTimesAreEachOther) {
  const std::pair<SYSTEMTIME, std::int64_t> cases[] = {
      {Time(1601, 1, 1, 0, 0, 0, 0, 1), 0},
      {Time(1970, 1, 1, 0, 0, 0, 0, 4), 116'444'736'000'000'000},
      {Time(2000, 2, 29, 23, 59, 59, 999, 2), 125'963'423'999'990'000},
      {Time(2100, 3, 1, 0, 0, 0, 1, 1), 157'520'160'000'010'000},
      {Time(30827, 12, 31, 23, 59, 59, 999, 5), 9'223'149'887'999'990'000},
  };
  for (const auto& [time, file_time] : cases) {
    std::int64_t converted = -1;
    EXPECT_TRUE(wexpol::ToFileTime(time, &converted));
    EXPECT_EQ(converted, file_time);
    EXPECT_EQ(Fields(wexpol::FromFileTime(file_time)), Fields(time)) << file_time;
  }
  std::int64_t day = 0;
  for (int i = 0; i < 150'000; ++i, day += 86'400 * wexpol::kFileTimePerSecond) {
    std::int64_t back = -1;
    ASSERT_TRUE(wexpol::ToFileTime(wexpol::FromFileTime(day), &back));
    ASSERT_EQ(back, day);
  }
}

TEST(ClockTest, TimesThatDoNotExistAreRefused) {
  std::int64_t untouched = 7;
  for (const SYSTEMTIME& time :
       {Time(1600, 12, 31), Time(30828, 1, 1), Time(2023, 2, 29), Time(2100, 2, 29),
        Time(2024, 4, 31), Time(2024, 0, 1), Time(2024, 13, 1), Time(2024, 1, 0),
        Time(2024, 1, 1, 24), Time(2024, 1, 1, 0, 60), Time(2024, 1, 1, 0, 0, 60),
        Time(2024, 1, 1, 0, 0, 0, 1000), Time(65535, 65535, 65535, 65535)}) {
    EXPECT_FALSE(wexpol::ToFileTime(time, &untouched));
  }
  EXPECT_EQ(untouched, 7);
  for (const std::int64_t file_time : {INT64_MIN, std::int64_t{-1}, INT64_MAX}) {
    EXPECT_EQ(Fields(wexpol::FromFileTime(file_time)), Fields(SYSTEMTIME{}));
  }
  for (const std::int64_t seconds : {INT64_MIN, INT64_MAX}) {
    EXPECT_EQ(Fields(wexpol::UtcToLocal(seconds)), Fields(SYSTEMTIME{}));
  }
  EXPECT_EQ(wexpol::FileTimeToUnix(wexpol::UnixToFileTime(-3) + 1), -3);
  EXPECT_EQ(wexpol::FileTimeToUnix(-1), -wexpol::kUnixEpochInSeconds - 1);
}

TEST(ClockTest, AllOfItFollowsTheClockInUse) {
  TestEnvironment environment;
  EXPECT_EQ(wexpol::NowUtc(), 1'710'331'200);
  environment.clock().SetLocalOffset(-3600);
  environment.clock().Advance(61);
  EXPECT_EQ(wexpol::NowUtc(), 1'710'331'261);
  EXPECT_EQ(Fields(wexpol::NowLocal()), Fields(Time(2024, 3, 13, 11, 1, 1, 0, 3)));
  EXPECT_EQ(Fields(wexpol::UtcToLocal(0)), Fields(Time(1969, 12, 31, 23, 0, 0, 0, 3)));
  EXPECT_EQ(wexpol::TickCount(), 61'000u);
}

#ifndef _WIN32
// Succeeds when the machine's own clock takes the zone of the process.
const ChildFunction kReadsZone("reads_zone", [](const Arguments&) {
  ::setenv("TZ", "HERE-5:30", 1);
  return wexpol::UtcToLocal(0).wHour == 5 && wexpol::UtcToLocal(0).wMinute == 30 ? 0 : 1;
});

TEST(ClockTest, TheHostsClockKnowsItsZone) {
  TestEnvironment environment;
  EXPECT_TRUE(ChildProcess(environment.folder(), "reads_zone").Succeeded());
}
#endif

}  // namespace
