#include "wexpol/antivirus/last_scan_summary.h"

#include <cstdio>

#include "wexpol/platform/system_types.h"
#include "wexpol/records/row.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/synchronise.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblLastScanSummary::id>("id", wexpol::kKey | wexpol::kNotReported),
    Column<&tblLastScanSummary::device_id>("device_id"),
    Column<&tblLastScanSummary::end_time>("end_time"),
    Column<&tblLastScanSummary::threats_found>("threats_found"),
};

// What ParseJson does not take in a way of its own.
constexpr wexpol::ColumnDef kParsed[] = {kColumns[1], kColumns[3]};

}  // namespace

const wexpol::Table& CLastScanSummary::Table() {
  static const wexpol::Table& table = *new wexpol::Table("last_scan_summaries", "last_scan_summary",
                                                         kColumns, {.through_record = true});
  return table;
}

bool CLastScanSummary::ParseJson(const rapidjson::Value& value) {
  Reset(true);
  if (!wexpol::ParseColumns(kParsed, &row(), value, wexpol::kRequired)) return false;
  const auto end = value.FindMember("end_time");
  if (end != value.MemberEnd() && end->value.IsString()) {
    end_time = ConvertDateTimeStringToEpoch(end->value.GetString());
  }
  return true;
}

bool CLastScanSummary::ReplaceInDB(sqlite3* db) const {
  wexpol::WriteScope scope(db);
  if (!scope.ok()) return false;
  static_cast<void>(wexpol::ClearTable(db, Table()));  // Ignored: the record is added all the same.
  return Add2DB(db) == SQLITE_DONE && scope.Commit();
}

std::int64_t CLastScanSummary::ConvertDateTimeStringToEpoch(const char* text) {
  int fields[6];
  // No number of nine digits can overflow an int.
  if (!text || std::sscanf(text, "%9d-%9d-%9dT%9d:%9d:%9d", &fields[0], &fields[1], &fields[2],
                           &fields[3], &fields[4], &fields[5]) != 6) {
    return -1;
  }
  for (const int field : fields) {
    if (field < 0 || field > UINT16_MAX) return -1;
  }
  const auto at = [&](int index) { return static_cast<std::uint16_t>(fields[index]); };
  const SYSTEMTIME utc = {at(0), at(1), 0, at(2), at(3), at(4), at(5), 0};
  std::int64_t file_time;
  return wexpol::ToFileTime(utc, &file_time) ? wexpol::FileTimeToUnix(file_time) : -1;
}
