// wexpolctl next-scan: when the antivirus component runs next.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/schedules.h"
#include "wexpol/platform/clock.h"
#include "wexpol/records/lists.h"

namespace wexpolctl {
namespace {

ExitCode NextScan(Call& call) {
  Database database(call.database, Database::kAsk);
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
