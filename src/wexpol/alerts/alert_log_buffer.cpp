#include "wexpol/alerts/alert_log_buffer.h"

#include <algorithm>
#include <optional>

#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/alert_log.h"
#include "wexpol/alerts/delete_by_type.h"
#include "wexpol/alerts/units.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/owned_list.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAlertLogBuffer::id>("id", wexpol::kKey | wexpol::kAssignedByDb),
    Column<&tblAlertLogBuffer::alert_event_type_id>("alert_event_type_id"),
    Column<&tblAlertLogBuffer::event_time>("event_time"),
    Column<&tblAlertLogBuffer::details>("details"),
};

constexpr char kDeleteOfType[] = "DELETE FROM alert_logs_buffer WHERE alert_event_type_id=?";

constexpr long kSend = 1;
constexpr long kNothing = 0;
constexpr long kFailed = -1;

// A negative duration never suppresses here; Decide does not take it for none.
bool IsSuppressed(sqlite3* db, const CAlertEventType& type) {
  CAlertCheck check;
  return type.suppression_duration >= 1 && check.GetRecord(db, type.id) &&
         check.Suppresses(wexpol::MinutesToSeconds(type.suppression_duration));
}

// Removes what fell out of the type's window: with no window, all that was before now. Its start
// and the id are bound as fields are: one that is the null marker goes as NULL, and nothing is
// removed.
void Purge(sqlite3* db, const CAlertEventType& type) {
  wexpol::Statement purge(
      db, "DELETE FROM alert_logs_buffer WHERE event_time<? AND alert_event_type_id=?");
  if (purge.ok()) {
    const std::int64_t start = wexpol::NowUtc() - wexpol::MinutesToSeconds(type.time_window);
    wexpol::kInt64.Bind(start, purge, 1);
    wexpol::kInt32.Bind(type.id, purge, 2);
  }
  const int code = purge.Step();
  if (code != SQLITE_DONE) throw int{code};
}

bool Buffer(sqlite3* db, const CAlertEventType& type, const char* details) {
  wexpol::WriteScope scope(db);
  if (!scope.ok()) throw scope.code();
  Purge(db, type);
  const CAlertLogBuffer occurrence(type.id, details ? details : type.details.get());
  return occurrence.Add2DB(db) == SQLITE_DONE && scope.Commit();
}

// As many as the numbers here can tell; nothing when they cannot be counted.
std::optional<std::int16_t> Count(sqlite3* db, long type_id) {
  const auto count = wexpol::QueryInt64(
      db, "SELECT COUNT(*) FROM alert_logs_buffer WHERE alert_event_type_id=?", type_id);
  if (!count) return std::nullopt;
  return static_cast<std::int16_t>(std::min<std::int64_t>(*count, INT16_MAX));
}

// A log that is not sent now waits for the type's next check.
long Decide(sqlite3* db, const CAlertEventType& type, long required) {
  const bool send = type.suppression_duration == 0 ||
                    CAlertCheck::DidPreviousAlertFail(db, type.id) || required == 1;
  return send ? kSend : kNothing;
}

// Makes one log of all that is buffered, in the place of the one that is pending. After a failure
// the log stays pending and the occurrences stay buffered.
long Condense(sqlite3* db, const CAlertEventType& type, long required) {
  // One lock over all of it: an occurrence that another process records meanwhile would be counted
  // by neither, and deleted with the others. Within a transaction of the caller the savepoint alone
  // holds it together.
  wexpol::WriteScope scope(db);
  wexpol::Savepoint writes(db);
  if (!scope.ok() || !writes.ok()) return kFailed;
  const auto count = Count(db, type.id);
  if (!count) return kFailed;
  // Another process was faster.
  if (*count == 0 || *count < required) return kNothing;

  std::int64_t first = -1;
  std::int64_t last = -1;
  std::string condensed;
  if (!CAlertLogBuffer::GetCondensedInfo(db, first, last, condensed, type.id) ||
      !CAlertLog(&type, condensed.c_str(), first, last).ReplaceInDB(db) ||
      !wexpol::Execute(db, kDeleteOfType, type.id)) {
    return kFailed;
  }
  const long decision = Decide(db, type, required);
  return writes.Commit() == SQLITE_DONE && scope.Commit() ? decision : kFailed;
}

}  // namespace

const wexpol::Table& CAlertLogBuffer::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("alert_logs_buffer", "alert_log_buffer", kColumns);
  return table;
}

CAlertLogBuffer::CAlertLogBuffer(long type_id, const char* text) {
  alert_event_type_id = static_cast<std::int32_t>(type_id);
  details = text;
}

long CAlertLogBuffer::AddAlertLogBuffer(sqlite3* db, const CAlertEventType* type,
                                        const char* details) {
  if (IsSuppressed(db, *type)) return kNothing;
  if (!Buffer(db, *type, details)) return kFailed;
  // Sizes and percentages were judged before the call: there one occurrence is enough.
  const long required = type->threshold_unit_id == wexpol::kOccurrences ? type->threshold : 1;
  const auto count = Count(db, type->id);
  if (!count) return kFailed;
  return *count < required ? kNothing : Condense(db, *type, required);
}

bool CAlertLogBuffer::AddAlertLogBuffer(std::vector<long>& to_send, sqlite3* db, short kind,
                                        const char* details) {
  wexpol::OwnedList<CAlertEventType> types;
  std::string error;
  bool done = wexpol::ListRecords(db, types.items(), "event_type_id", kind, error);
  to_send.reserve(to_send.size() + types.items().size());  // No id is lost for want of memory.
  for (const CAlertEventType* type : types.items()) {
    if (!type->enabled) continue;
    const long result = AddAlertLogBuffer(db, type, details);
    if (result == kSend) to_send.push_back(type->id);
    if (result == kFailed) done = false;
  }
  return done;
}

short CAlertLogBuffer::GetCount(sqlite3* db, long type_id) {
  return Count(db, type_id).value_or(0);
}

bool CAlertLogBuffer::GetCondensedInfo(sqlite3* db, std::int64_t& first, std::int64_t& last,
                                       std::string& details, long type_id) {
  wexpol::Statement select(db,
                           "SELECT details, max(event_time), min(event_time) FROM "
                           "alert_logs_buffer WHERE alert_event_type_id=?",
                           type_id);
  if (!select.StepRow()) return false;
  if (const char* text = select.Text(0)) details = text;
  if (!select.IsNull(1)) last = select.Int64(1);
  if (!select.IsNull(2)) first = select.Int64(2);
  return true;
}

int CAlertLogBuffer::DeleteByType(sqlite3* db, long type_id) {
  return wexpol::DeleteRowsOfType(db, Table(), kDeleteOfType, type_id);
}
