// wexpolctl explain --schedule: by which rule a schedule runs when it does.

#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/explain.h"
#include "tools/wexpolctl/schedules.h"
#include "wexpol/antivirus/schedule_timing.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace wexpolctl {
namespace {

const char* InWords(wexpol::ScheduleRule rule) {
  switch (rule) {
    case wexpol::ScheduleRule::kNone:
      return "it has no kind that can run: never";
    case wexpol::ScheduleRule::kStartupDelay:
      return "the delay since the system has started is not over";
    case wexpol::ScheduleRule::kFirstRun:
      return "no last run is known to count its period from: now";
    case wexpol::ScheduleRule::kPeriodRuns:
      return "the period since the last run is not over";
    case wexpol::ScheduleRule::kPeriodOver:
      return "the period since the last run is over: now";
    case wexpol::ScheduleRule::kToday:
      return "today is one of its days, and its time is still to come";
    case wexpol::ScheduleRule::kLaterDay:
      return "the first of its days of the week after today";
    case wexpol::ScheduleRule::kNoDay:
      return "no day of the week is set: the end of the next seven days";
    case wexpol::ScheduleRule::kDayOfThisMonth:
      return "its day of this month is still to come";
    case wexpol::ScheduleRule::kDayOfNextMonth:
      return "its day of this month has passed: that of the next";
  }
  return "";
}

std::string LastRun() {
  SYSTEMTIME time;
  char text[48];
  if (!CAvSchedule::ReadUpdateTime(time)) return {};
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

}  // namespace

ExitCode ExplainSchedule(Call& call) {
  const std::int64_t id = *call.options.Number("--schedule");
  Database database(call.database, Database::kAsk);
  CAvSchedule schedule;
  if (!wexpol::QueryRecord(schedule, database.handle(), CAvSchedule::Table().select_by_key(), id)) {
    throw Failure{kFinding, "There is no schedule " + std::to_string(id) + ".",
                  "All are shown by 'wexpolctl next-scan'."};
  }
  const wexpol::NextRun next = wexpol::UntilNextRun(schedule);
  const std::string last_run = schedule.period_available ? LastRun() : "";
  Report& report = call.report;
  report.Add("schedule", Number(schedule.id));
  report.Add("name", Text(schedule.schedule_name.view()));
  report.Add("enabled", Flag(schedule.enabled));
  report.Add("kind", Text(KindOf(schedule)));
  report.Add("last run", last_run.empty() ? Nothing() : Text(last_run));
  report.Add("now", Instant(wexpol::NowUtc()));
  report.Add("left", next.seconds < 0 ? Nothing() : Duration(next.seconds));
  report.Add("at", next.seconds < 0 ? Nothing() : Instant(wexpol::NowUtc() + next.seconds));
  report.Add("why", Text(InWords(next.rule)));
  return kDone;
}

}  // namespace wexpolctl
