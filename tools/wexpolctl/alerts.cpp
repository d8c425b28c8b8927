// wexpolctl alerts: every alert event type with the state it is in. No timer is started.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/check_timers.h"
#include "wexpol/alerts/units.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"

namespace wexpolctl {
namespace {

void AddType(sqlite3* db, const CAlertEventType& type, Listing& listing) {
  const auto buffered = wexpol::QueryInt(
      db, "SELECT count(*) FROM alert_logs_buffer WHERE alert_event_type_id=?", type.id);
  const auto pending =
      wexpol::QueryInt(db, "SELECT count(*) FROM alert_logs WHERE alert_event_type_id=?", type.id);
  CAlertCheck check;
  const bool running = check.GetRecord(db, type.id);
  const auto period = wexpol::CheckPeriod(type);
  const std::int64_t suppression = wexpol::MinutesToSeconds(type.suppression_duration);
  const bool suppressed =
      running && type.suppression_duration >= 1 && check.Suppresses(suppression);
  listing.Add({Number(type.id), Text(type.name.view()), Flag(type.enabled),
               Number(buffered.value_or(0)), Number(pending.value_or(0)),
               running && period ? Duration(check.SecondsRemaining(*period)) : Nothing(),
               suppressed ? Instant(check.date_time + suppression) : Nothing()});
}

ExitCode Alerts(Call& call) {
  Database database(call.database, Database::kAsk);
  const wexpol::ReadScope scope(database.handle());
  Listing& listing = call.report.AddListing(
      "types",
      {"id", "name", "enabled", "buffered", "pending", "next check in", "suppressed until"});
  CAlertEventType type;
  std::string error;
  wexpol::ListStatement select(database.handle(), CAlertEventType::Table(), nullptr, 0);
  while (select.StepRow()) {
    type.CopyFromDB(select.get());
    AddType(database.handle(), type, listing);
  }
  if (!select.Finish(error)) {
    throw Failure{kFinding, "The alert event types cannot be read: " + error + ".",
                  "Check the file with 'wexpolctl check'."};
  }
  if (listing.empty()) call.report.AddLine("There are no alert event types.");
  return kDone;
}

}  // namespace

Command AlertsCommand() {
  return {"alerts", "Show the alert event types with their state", {}, &Alerts};
}

}  // namespace wexpolctl
