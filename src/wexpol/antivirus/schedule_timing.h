// How long it is until a schedule runs next, and by which of its rules.

#ifndef WEXPOL_ANTIVIRUS_SCHEDULE_TIMING_H_
#define WEXPOL_ANTIVIRUS_SCHEDULE_TIMING_H_

struct tblAvSchedule;

namespace wexpol {

enum class ScheduleRule {
  kNone,            // No kind is available.
  kStartupDelay,    // The delay since the system has started is not over.
  kFirstRun,        // There is a period, and no last run to reckon it from.
  kPeriodRuns,      // The period since the last run is not over.
  kPeriodOver,      // It is over.
  kToday,           // Today is one of the days of the week, and its time is still to come.
  kLaterDay,        // The first of the days of the week after today.
  kNoDay,           // There are days of the week, and none is set: the end of the next seven.
  kDayOfThisMonth,  // The day of the month is still to come.
  kDayOfNextMonth,  // It has passed.
};

struct NextRun {
  ScheduleRule rule;
  long seconds;  // 0 is now, -1 never.
};

NextRun UntilNextRun(const tblAvSchedule& schedule);

}  // namespace wexpol

#endif  // WEXPOL_ANTIVIRUS_SCHEDULE_TIMING_H_
