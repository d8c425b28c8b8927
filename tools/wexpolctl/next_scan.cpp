// wexpolctl next-scan: when the antivirus component runs next.

#include <cstdio>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/antivirus/av_schedule.h"
#include "wexpol/platform/clock.h"
#include "wexpol/records/lists.h"

namespace wexpolctl {
namespace {

std::string TimeOfDay(std::int32_t minutes) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d", minutes / 60, minutes % 60);
  return text;
}

// What the row asks for; a startup delay goes before the other kind.
std::string KindOf(const CAvSchedule& schedule) {
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::string kind;
  if (schedule.run_on_computer_startup) {
    kind = std::to_string(schedule.startup_minutes) + " min after start, ";
  }
  if (schedule.period_available) {
    return kind + "every " + std::to_string(schedule.period_minutes) + " min";
  }
  if (schedule.day_of_month_available) {
    return kind + "day " + std::to_string(schedule.day_of_month) + " of the month at " +
           TimeOfDay(schedule.day_minutes);
  }
  if (schedule.days_of_week_available) {
    for (int day = 0; day < 7; ++day) {
      if (schedule.days_of_week >> day & 1) kind.append(kDays[day]).append(" ");
    }
    return kind + "at " + TimeOfDay(schedule.day_minutes);
  }
  return kind.empty() ? "none" : kind.substr(0, kind.size() - 2);
}

ExitCode NextScan(Call& call) {
  Database database(call.database);
  Listing& listing =
      call.report.AddListing("schedules", {"id", "name", "enabled", "kind", "left", "at"});
  CAvSchedule schedule;
  std::string error;
  wexpol::ListStatement select(database.handle(), CAvSchedule::Table(), nullptr, 0);
  while (select.StepRow()) {
    schedule.CopyFromDB(select.get());
    const long left = schedule.HowLongUntilSchedule();
    listing.Add({Number(schedule.id), Text(schedule.schedule_name.view()), Flag(schedule.enabled),
                 Text(KindOf(schedule)), left < 0 ? Nothing() : Duration(left),
                 left < 0 ? Nothing() : Instant(wexpol::NowUtc() + left)});
  }
  if (!select.Finish(error)) {
    throw Failure{kFinding, "The schedules cannot be read: " + error + ".",
                  "Check the file with 'wexpolctl check'."};
  }
  if (listing.empty()) call.report.AddLine("There are no schedules.");
  return kDone;
}

}  // namespace

Command NextScanCommand() {
  return {"next-scan", "Show when each scan and update schedule runs next", {}, &NextScan};
}

}  // namespace wexpolctl
