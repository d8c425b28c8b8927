#include "wexpol/alerts/alert_event_type.h"

#include <cmath>

#include "wexpol/alerts/units.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kRequired;
using wexpol::kStrictBool;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAlertEventType::id>("id", wexpol::kKey | kRequired),
    Column<&tblAlertEventType::alert_id>("alert_id", kRequired),
    Column<&tblAlertEventType::event_type_id>("event_type_id"),
    Column<&tblAlertEventType::name>("name"),
    Column<&tblAlertEventType::enabled>("enabled", kStrictBool),
    Column<&tblAlertEventType::suppression_duration>("suppression_duration"),
    Column<&tblAlertEventType::threshold>("threshold"),
    Column<&tblAlertEventType::threshold_unit_id>("threshold_unit_id"),
    Column<&tblAlertEventType::time_window>("time_window"),
    Column<&tblAlertEventType::details>("details"),
    Column<&tblAlertEventType::auto_acknowledge_enabled>("auto_acknowledge_enabled", kStrictBool),
};

constexpr wexpol::ColumnDef kTimingColumns[] = {kColumns[0], kColumns[2], kColumns[4], kColumns[5],
                                                kColumns[8]};

constexpr std::int16_t kFirstServiceEvent = 19;
constexpr std::int16_t kLastServiceEvent = 21;

}  // namespace

const wexpol::Table& CAlertEventType::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("alert_event_types", "alert_event_type", kColumns);
  return table;
}

const wexpol::Table& CAlertEventType::TimingTable() {
  static const wexpol::Table& table =
      *new wexpol::Table(Table().name(), Table().json_key(), kTimingColumns);
  return table;
}

bool CAlertEventType::GetRecord(sqlite3* db, long type_id) {
  return wexpol::QueryRecord(*this, db, "SELECT * FROM alert_event_types WHERE id=? AND enabled=1",
                             type_id);
}

bool CAlertEventType::LoadFromDb(sqlite3* db, short kind) {
  return wexpol::QueryRecord(
      *this, db, "SELECT * FROM alert_event_types WHERE event_type_id=? AND enabled=1", kind);
}

bool CAlertEventType::IsAutoAcknowledgeEnabled(sqlite3* db, short kind) {
  return wexpol::QueryExists(db,
                             "SELECT id FROM alert_event_types WHERE event_type_id=? AND "
                             "auto_acknowledge_enabled=1",
                             kind);
}

bool CAlertEventType::IsWindowsServiceEvent() const {
  return event_type_id >= kFirstServiceEvent && event_type_id <= kLastServiceEvent;
}

bool CAlertEventType::IsValidRule() const {
  return suppression_duration < 1 || time_window <= 0 || suppression_duration > time_window;
}

bool CAlertEventType::IsLimitReached(const std::int64_t& value, const std::int64_t& total) const {
  const std::int64_t limit = threshold;
  switch (threshold_unit_id) {
    case wexpol::kKilobytes:
      return value < limit * 1024;
    case wexpol::kMegabytes:
      return value < limit * 1024 * 1024;
    case wexpol::kGigabytes:
      return value < limit * 1024 * 1024 * 1024;
    case wexpol::kPercent:
      return total != 0 &&
             std::trunc(static_cast<double>(value) / static_cast<double>(total) * 100) <= threshold;
    default:
      return false;
  }
}
