// wexpolctl explain --alert: what would come of an event now, tried on a copy.

#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/explain.h"
#include "tools/wexpolctl/rehearsal.h"
#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/alert_log_buffer.h"
#include "wexpol/alerts/units.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace wexpolctl {
namespace {

std::int64_t Count(sqlite3* db, wexpol::Sql sql, const CAlertEventType& type) {
  return wexpol::QueryInt64(db, sql, type.id).value_or(0);
}

std::string WhyBuffered(std::int64_t buffered, const CAlertEventType& type) {
  return "it is kept: " + std::to_string(buffered) + " of the " + std::to_string(type.threshold) +
         " occurrences within " + std::to_string(type.time_window) + " min that make an alert";
}

// Records an event as the agent does, and tells what has become of it.
std::string Outcome(sqlite3* copy, const CAlertEventType& type) {
  if (!type.enabled) return "nothing: the type is switched off";
  const int writes = sqlite3_total_changes(copy);
  const long result = CAlertLogBuffer::AddAlertLogBuffer(copy, &type, nullptr);
  if (result < 0) return "it cannot be recorded";
  if (result > 0) return "an alert is sent at once";
  if (sqlite3_total_changes(copy) == writes) {
    return "nothing: an alert was sent, and the time of suppression is not over";
  }
  if (const short buffered = CAlertLogBuffer::GetCount(copy, type.id)) {
    return WhyBuffered(buffered, type);
  }
  return "an alert log is made and waits for the next check: the last alert was sent";
}

}  // namespace

ExitCode ExplainAlert(Call& call) {
  const std::int64_t id = *call.options.Number("--alert");
  Database database(call.database, Database::kAsk);
  sqlite3* db = database.handle();
  CAlertEventType type;
  if (!wexpol::QueryRecord(type, db, CAlertEventType::Table().select_by_key(), id)) {
    throw Failure{kFinding, "There is no alert event type " + std::to_string(id) + ".",
                  "All are shown by 'wexpolctl alerts'."};
  }
  CAlertCheck check;
  const bool running = check.GetRecord(db, type.id);
  const bool suppresses = running && check.alert_sent && type.suppression_duration >= 1;
  Rehearsal rehearsal(db);
  Report& report = call.report;
  report.Add("alert event type", Number(type.id));
  report.Add("name", Text(type.name.view()));
  report.Add("enabled", Flag(type.enabled));
  report.Add("occurrences kept",
             Number(Count(db, "SELECT count(*) FROM alert_logs_buffer WHERE alert_event_type_id=?",
                          type)));
  report.Add(
      "alert logs waiting",
      Number(Count(db, "SELECT count(*) FROM alert_logs WHERE alert_event_type_id=?", type)));
  report.Add("timer started", running ? Instant(check.date_time) : Nothing());
  report.Add("last alert sent", running ? Flag(check.alert_sent) : Nothing());
  report.Add("suppressed until",
             suppresses
                 ? Instant(check.date_time + wexpol::MinutesToSeconds(type.suppression_duration))
                 : Nothing());
  report.Add("of an event now", Text(Outcome(rehearsal.handle(), type)));
  return kDone;
}

}  // namespace wexpolctl
