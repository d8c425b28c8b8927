#include "wexpol/alerts/alert_log.h"

#include <cstddef>
#include <cstdio>

#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/delete_by_type.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kNotReported;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAlertLog::id>("id", wexpol::kKey | wexpol::kAssignedByDb | kNotReported),
    Column<&tblAlertLog::alert_event_type_id>("alert_event_type_id", kNotReported),
    Column<&tblAlertLog::alert_id>("alert_id"),
    Column<&tblAlertLog::details>("details"),
    Column<&tblAlertLog::event_type_id>("event_type_id"),
    Column<&tblAlertLog::alert_name>("alert_name"),
    // Reported as local time, by GenerateJson itself.
    Column<&tblAlertLog::event_start>("event_start", kNotReported),
    Column<&tblAlertLog::event_end>("event_end", kNotReported),
};

constexpr char kDeleteOfType[] = "DELETE FROM alert_logs WHERE alert_event_type_id=?";

void AppendLocalTime(const char* key, std::int64_t utc, std::string& out) {
  const SYSTEMTIME local = wexpol::UtcToLocal(utc);
  if (utc == -1 || local.wYear == 0) return;
  char text[64];
  std::snprintf(text, sizeof text, R"(,"%s": "%d-%02d-%02dT%02d:%02d:%02d")", key, local.wYear,
                local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond);
  out += text;
}

}  // namespace

const wexpol::Table& CAlertLog::Table() {
  static const wexpol::Table& table = *new wexpol::Table("alert_logs", "alert_log", kColumns);
  return table;
}

CAlertLog::CAlertLog(const CAlertEventType* type, const char* text, std::int64_t start,
                     std::int64_t end) {
  alert_event_type_id = type->id;
  alert_id = type->alert_id;
  details = text ? wexpol::Text(text) : type->details;
  event_type_id = type->event_type_id;
  alert_name = type->name;
  event_start = start == -1 ? wexpol::NowUtc() : start;
  event_end = end == -1 ? event_start : end;
}

void CAlertLog::GenerateJson(std::string& out, long device_id) const {
  std::string fields;
  Record::GenerateJson(fields);
  fields.front() = ',';
  fields.pop_back();
  out += "{\"device_id\": " + std::to_string(device_id);
  if (fields.size() > 1) out += fields;
  AppendLocalTime("event_start", event_start, out);
  AppendLocalTime("event_end", event_end, out);
  out += '}';
}

bool CAlertLog::AddWithTimer(sqlite3* db) const {
  return CAlertCheck::UpdateAlertCheck(db, alert_event_type_id, false) && Add2DB(db) == SQLITE_DONE;
}

bool CAlertLog::List(sqlite3* db, std::list<CAlertLog*>& out, long type_id, std::string& error) {
  const std::size_t before = out.size();
  if (!wexpol::ListRecords(db, out, "alert_event_type_id", type_id, error, "id")) return false;
  if (out.size() > before || CAlertCheck::UpdateAlertCheck(db, type_id, false)) return true;
  error = wexpol::FailureObject(db, sqlite3_errcode(db));
  return false;
}

bool CAlertLog::ReplaceInDB(sqlite3* db) const {
  return wexpol::Execute(db, kDeleteOfType, alert_event_type_id) && Add2DB(db) == SQLITE_DONE;
}

int CAlertLog::DeleteByType(sqlite3* db, long type_id) {
  return wexpol::DeleteRowsOfType(db, Table(), kDeleteOfType, type_id);
}

bool CAlertLog::GetStartAndEndTimes(sqlite3* db, std::int64_t& start, std::int64_t& end,
                                    long type_id) {
  wexpol::Statement select(
      db, "SELECT min(event_start), max(event_end) FROM alert_logs WHERE alert_event_type_id=?",
      type_id);
  if (!select.StepRow()) return false;
  if (!select.IsNull(0)) start = select.Int64(0);
  if (!select.IsNull(1)) end = select.Int64(1);
  return true;
}
