#include "alerts/alert_log_buffer.h"

#include <algorithm>

#include "alerts/alert_check.h"
#include "alerts/alert_event_type.h"
#include "alerts/alert_log.h"
#include "alerts/units.h"
#include "records/owned_list.h"
#include "records/query.h"
#include "records/synchronise.h"
#include "records/table.h"
#include "records/write_scope.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAlertLogBuffer::id>("id", records::kKey | records::kAssignedByDb),
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
         check.Suppresses(alerts::MinutesToSeconds(type.suppression_duration));
}

// Removes what fell out of the type's window: with no window, all that was before now.
void Purge(sqlite3* db, const CAlertEventType& type) {
  records::Statement purge(
      db, "DELETE FROM alert_logs_buffer WHERE event_time<? AND alert_event_type_id=?");
  if (purge.ok()) {
    const std::int64_t start = platform::NowUtc() - alerts::MinutesToSeconds(type.time_window);
    records::kInt64.bind(&start, purge, 1);
    records::kInt32.bind(&type.id, purge, 2);
  }
  const int code = purge.Step();
  if (code != SQLITE_DONE) throw int{code};
}

// A log that is not sent now waits for the type's next check.
long Decide(sqlite3* db, const CAlertEventType& type, long required) {
  const bool send = type.suppression_duration == 0 ||
                    CAlertCheck::DidPreviousAlertFail(db, type.id) || required == 1;
  return send ? kSend : kNothing;
}

// Buffers the occurrence, and makes one log of all that are buffered once they are enough.
long RecordOccurrence(sqlite3* db, const CAlertEventType& type, const char* details) {
  Purge(db, type);
  const CAlertLogBuffer occurrence(type.id, details ? details : type.details.get());
  if (occurrence.Add2DB(db) != SQLITE_DONE) return kFailed;

  // Sizes and percentages were judged before the call: there one occurrence is enough.
  const long required = type.threshold_unit_id == alerts::kOccurrences ? type.threshold : 1;
  if (CAlertLogBuffer::GetCount(db, type.id) < required) return kNothing;

  std::int64_t first = -1;
  std::int64_t last = -1;
  std::string condensed;
  if (!CAlertLogBuffer::GetCondensedInfo(db, first, last, condensed, type.id)) return kNothing;
  if (!CAlertLog(&type, condensed.c_str(), first, last).ReplaceInDB(db)) return kFailed;
  if (!records::Execute(db, kDeleteOfType, type.id)) return kFailed;
  return Decide(db, type, required);
}

}  // namespace

const records::Table& CAlertLogBuffer::Table() {
  static const records::Table& table =
      *new records::Table("alert_logs_buffer", "alert_log_buffer", kColumns);
  return table;
}

CAlertLogBuffer::CAlertLogBuffer(long type_id, const char* text) {
  alert_event_type_id = static_cast<std::int32_t>(type_id);
  details = text;
}

long CAlertLogBuffer::AddAlertLogBuffer(sqlite3* db, const CAlertEventType* type,
                                        const char* details) {
  if (IsSuppressed(db, *type)) return kNothing;
  // One lock over all of it: an occurrence that another process records meanwhile would be counted
  // by neither, and deleted with the others.
  records::WriteScope scope(db);
  if (!scope.ok()) throw scope.code();
  const long result = RecordOccurrence(db, *type, details);
  return result != kFailed && scope.Commit() ? result : kFailed;
}

bool CAlertLogBuffer::AddAlertLogBuffer(std::vector<long>& to_send, sqlite3* db, short kind,
                                        const char* details) {
  records::OwnedList<CAlertEventType> types;
  std::string error;
  bool done = records::ListRecords(db, types.items(), "event_type_id", kind, error);
  for (const CAlertEventType* type : types.items()) {
    if (!type->enabled) continue;
    const long result = AddAlertLogBuffer(db, type, details);
    if (result == kSend) to_send.push_back(type->id);
    if (result == kFailed) done = false;
  }
  return done;
}

short CAlertLogBuffer::GetCount(sqlite3* db, long type_id) {
  const std::int64_t count =
      records::QueryInt64(db, "SELECT COUNT(*) FROM alert_logs_buffer WHERE alert_event_type_id=?",
                          type_id)
          .value_or(0);
  return static_cast<short>(std::min<std::int64_t>(count, INT16_MAX));
}

bool CAlertLogBuffer::GetCondensedInfo(sqlite3* db, std::int64_t& first, std::int64_t& last,
                                       std::string& details, long type_id) {
  records::Statement select(db,
                            "SELECT details, max(event_time), min(event_time) FROM "
                            "alert_logs_buffer WHERE alert_event_type_id=?",
                            type_id);
  if (!select.Row()) return false;
  if (const char* text = select.Text(0)) details = text;
  if (!select.IsNull(1)) last = select.Int64(1);
  if (!select.IsNull(2)) first = select.Int64(2);
  return true;
}

int CAlertLogBuffer::DeleteByType(sqlite3* db, long type_id) {
  if (type_id < 1) return records::Statement(db, "DELETE FROM alert_logs_buffer").Step();
  return records::Statement(db, kDeleteOfType, type_id).Step();
}
