// All is reckoned in the local time of the moment, so a change to or from daylight time before the
// run is not seen.

#include "wexpol/antivirus/schedule_timing.h"

#include <cinttypes>
#include <cstdint>
#include <optional>

#include "wexpol/antivirus/av_schedule.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/system_types.h"

namespace {

using wexpol::NextRun;
using wexpol::ScheduleRule;

constexpr long kNow = 0;
constexpr long kNever = -1;
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerDay = 1440;
constexpr int kSecondsPerDay = 86'400;
constexpr int kDaysPerWeek = 7;

// By month; the first is never read. February has 28 days in every year: in a leap year, what is
// reckoned to the end of February comes out a day short.
constexpr std::uint16_t kDaysInMonth[] = {100, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

// Unsigned 32 bits, as the system counts its ticks.
std::uint32_t InMilliseconds(std::int32_t minutes) {
  return static_cast<std::uint32_t>(minutes) * 60'000u;
}

// For the log, which shows them signed.
int Shown(std::uint32_t milliseconds) { return static_cast<int>(milliseconds); }

// Cut to 32 bits.
long Answer(std::int64_t seconds) { return static_cast<std::int32_t>(seconds); }

std::uint32_t GetNumberOfMilliecondsElapsedToday(const SYSTEMTIME& time) {
  return ((time.wHour * 60u + time.wMinute) * 60u + time.wSecond) * 1000u + time.wMilliseconds;
}

// The hours are not reduced: a day of more than 24 hours makes a date that does not exist.
void GetHourMinuteSecondFromMilliseconds(SYSTEMTIME& time, std::uint32_t milliseconds) {
  time.wHour = static_cast<std::uint16_t>(milliseconds / 3'600'000);
  time.wMinute = static_cast<std::uint16_t>(milliseconds / 1000 % 3600 / 60);
  time.wSecond = static_cast<std::uint16_t>(milliseconds / 1000 % 60);
}

// A date that does not exist counts as the start of 1601.
std::int64_t FileTimeOf(const SYSTEMTIME& time) {
  std::int64_t file_time = 0;
  wexpol::ToFileTime(time, &file_time);
  return file_time;
}

// Whole seconds, cut towards zero.
std::int64_t GetDeltaInSeconds(const SYSTEMTIME& later, const SYSTEMTIME& earlier) {
  return (FileTimeOf(later) - FileTimeOf(earlier)) / wexpol::kFileTimePerSecond;
}

SYSTEMTIME EndOfDay(SYSTEMTIME time) {
  time.wHour = 23;
  time.wMinute = 59;
  time.wSecond = 59;
  time.wMilliseconds = 999;
  return time;
}

// Nothing once the delay is over. The ticks start again at 0 every 49.7 days, and the delay with
// them.
std::optional<NextRun> UntilStartupDelay(const tblAvSchedule& schedule) {
  const std::uint32_t delay = InMilliseconds(schedule.startup_minutes);
  const std::uint32_t up = wexpol::TickCount();
  wexpol::LogMessage("milliseconds_elapsed_since_system_start = %d, milliseconds = %d", Shown(up),
                     Shown(delay));
  if (up >= delay) return std::nullopt;
  return NextRun{ScheduleRule::kStartupDelay, static_cast<long>((delay - up) / 1000)};
}

// After the clock was set back the last run lies ahead, and it takes longer than the period.
NextRun UntilPeriodEnds(const tblAvSchedule& schedule, const SYSTEMTIME& now) {
  SYSTEMTIME last_run;
  if (!CAvSchedule::ReadUpdateTime(last_run)) return {ScheduleRule::kFirstRun, kNow};
  const std::int64_t elapsed = GetDeltaInSeconds(now, last_run);
  const std::int64_t period = std::int64_t{schedule.period_minutes} * kSecondsPerMinute;
  wexpol::LogMessage("how_long_has_it_been = %" PRId64 ", frequency_in_seconds = %" PRId64, elapsed,
                     period);
  if (elapsed < period) return {ScheduleRule::kPeriodRuns, Answer(period - elapsed)};
  return {ScheduleRule::kPeriodOver, kNow};
}

bool RunsOn(const tblAvSchedule& schedule, int day_of_week) {
  return schedule.days_of_week >> day_of_week & 1;
}

// The first of the days after today. Today ends at 23:59:59, so a full second is missing.
NextRun UntilLaterDayOfWeek(const tblAvSchedule& schedule, const SYSTEMTIME& now) {
  std::int64_t seconds = GetDeltaInSeconds(EndOfDay(now), now);
  int ahead = 1;
  while (ahead <= kDaysPerWeek && !RunsOn(schedule, (now.wDayOfWeek + ahead) % kDaysPerWeek)) {
    seconds += kSecondsPerDay;
    ++ahead;
  }
  // Without a day, what is left is the end of the seven days.
  const bool found = ahead <= kDaysPerWeek;
  if (found) seconds += std::int64_t{schedule.day_minutes} * kSecondsPerMinute;
  wexpol::LogMessage("nSecondsLeft = %d", static_cast<int>(Answer(seconds)));
  return {found ? ScheduleRule::kLaterDay : ScheduleRule::kNoDay, Answer(seconds)};
}

NextRun UntilDayOfWeek(const tblAvSchedule& schedule, const SYSTEMTIME& now) {
  if (schedule.day_interval_available) {
    wexpol::LogMessage("day_interval_available not supported");
  }
  if (!schedule.days_of_week_available) return {ScheduleRule::kNone, kNever};
  if (RunsOn(schedule, now.wDayOfWeek)) {
    const std::uint32_t target = InMilliseconds(schedule.day_minutes);
    const std::uint32_t elapsed = GetNumberOfMilliecondsElapsedToday(now);
    wexpol::LogMessage("nMillisecondsElapsedToday = %d, milliseconds = %d", Shown(elapsed),
                       Shown(target));
    // Unlike a startup delay, the exact moment is still to come.
    if (elapsed <= target) {
      return {ScheduleRule::kToday, static_cast<long>((target - elapsed) / 1000)};
    }
  }
  return UntilLaterDayOfWeek(schedule, now);
}

NextRun UntilDayOfMonth(const tblAvSchedule& schedule, const SYSTEMTIME& now) {
  SYSTEMTIME target = now;
  target.wDay = static_cast<std::uint16_t>(schedule.day_of_month);
  GetHourMinuteSecondFromMilliseconds(target, InMilliseconds(schedule.day_minutes));
  std::int64_t seconds = GetDeltaInSeconds(target, now);
  wexpol::LogMessage("nSecondsLeft = %" PRId64 " (this month)", seconds);
  if (seconds > 0) return {ScheduleRule::kDayOfThisMonth, Answer(seconds)};

  SYSTEMTIME end = EndOfDay(now);
  end.wDay = kDaysInMonth[now.wMonth];
  // Widened first: the console's minutes may be any number.
  const std::int64_t minutes_of_month =
      schedule.day_minutes + (std::int64_t{schedule.day_of_month} - 1) * kMinutesPerDay;
  seconds = GetDeltaInSeconds(end, now) + minutes_of_month * kSecondsPerMinute;
  wexpol::LogMessage("nSecondsLeft = %" PRId64 " (next month)", seconds);
  return {ScheduleRule::kDayOfNextMonth, Answer(seconds)};
}

}  // namespace

wexpol::NextRun wexpol::UntilNextRun(const tblAvSchedule& schedule) {
  const SYSTEMTIME now = NowLocal();
  if (schedule.run_on_computer_startup) {
    if (const auto run = UntilStartupDelay(schedule)) return *run;
  }
  if (schedule.period_available) return UntilPeriodEnds(schedule, now);
  return schedule.day_of_month_available ? UntilDayOfMonth(schedule, now)
                                         : UntilDayOfWeek(schedule, now);
}

long CAvSchedule::HowLongUntilSchedule() const { return wexpol::UntilNextRun(*this).seconds; }
