#include "wexpol/platform/clock.h"

#include <atomic>

#include "wexpol/platform/clock_source.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/platform/testing.h"

namespace wexpol {
namespace {

std::atomic<const Clock*> g_clock{nullptr};

const Clock& CurrentClock() {
  const Clock* replaced = g_clock.load(std::memory_order_acquire);
  return replaced ? *replaced : SystemClock();
}

constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;  // the last one that the system converts

constexpr bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

// Days from 1601-01-01 to the first of January of `year`.
constexpr std::int64_t DaysBeforeYear(int year) {
  const int past = year - kFirstYear;
  return std::int64_t{past} * 365 + past / 4 - past / 100 + past / 400;
}

constexpr std::int64_t kEndOfFileTime =
    DaysBeforeYear(kLastYear + 1) * kSecondsPerDay * kFileTimePerSecond;

}  // namespace

void SetClockForTesting(const Clock* clock) { g_clock.store(clock, std::memory_order_release); }

std::int64_t NowUtc() { return FileTimeToUnix(CurrentClock().UtcFileTime()); }

SYSTEMTIME NowLocal() {
  const Clock& clock = CurrentClock();
  return FromFileTime(clock.UtcToLocal(clock.UtcFileTime()));
}

std::uint32_t TickCount() { return CurrentClock().TickCount(); }

SYSTEMTIME UtcToLocal(std::int64_t utc_seconds) {
  if (utc_seconds < -kUnixEpochInSeconds || utc_seconds >= FileTimeToUnix(kEndOfFileTime)) {
    return {};
  }
  return FromFileTime(CurrentClock().UtcToLocal(UnixToFileTime(utc_seconds)));
}

bool ToFileTime(const SYSTEMTIME& time, std::int64_t* file_time) {
  if (time.wYear < kFirstYear || time.wYear > kLastYear || time.wMonth < 1 || time.wMonth > 12 ||
      time.wDay < 1 || time.wDay > DaysInMonth(time.wYear, time.wMonth) || time.wHour > 23 ||
      time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999) {
    return false;
  }
  std::int64_t days = DaysBeforeYear(time.wYear) + time.wDay - 1;
  for (int month = 1; month < time.wMonth; ++month) days += DaysInMonth(time.wYear, month);
  const std::int64_t seconds =
      days * kSecondsPerDay + (std::int64_t{time.wHour} * 60 + time.wMinute) * 60 + time.wSecond;
  *file_time = seconds * kFileTimePerSecond + time.wMilliseconds * (kFileTimePerSecond / 1000);
  return true;
}

SYSTEMTIME FromFileTime(std::int64_t file_time) {
  if (file_time < 0 || file_time >= kEndOfFileTime) return {};

  const std::int64_t milliseconds = file_time / (kFileTimePerSecond / 1000);
  const std::int64_t seconds = milliseconds / 1000;
  const auto days = static_cast<int>(seconds / kSecondsPerDay);
  const auto second_of_day = static_cast<int>(seconds % kSecondsPerDay);

  int year = kFirstYear + days / 366;  // never too late; leap years make it a little early
  while (DaysBeforeYear(year + 1) <= days) ++year;
  auto day = static_cast<int>(days - DaysBeforeYear(year));
  int month = 1;
  for (; day >= DaysInMonth(year, month); ++month) day -= DaysInMonth(year, month);

  const auto narrow = [](std::int64_t value) { return static_cast<std::uint16_t>(value); };
  SYSTEMTIME time = {};
  time.wYear = narrow(year);
  time.wMonth = narrow(month);
  time.wDayOfWeek = narrow((days + 1) % 7);  // 1601-01-01 was a Monday
  time.wDay = narrow(day + 1);
  time.wHour = narrow(second_of_day / 3600);
  time.wMinute = narrow(second_of_day / 60 % 60);
  time.wSecond = narrow(second_of_day % 60);
  time.wMilliseconds = narrow(milliseconds % 1000);
  return time;
}

}  // namespace wexpol
