#include "wexpol/alerts/alert_check.h"

#include "wexpol/platform/clock.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAlertCheck::alert_event_type_id>("alert_event_type_id", wexpol::kKey),
    Column<&tblAlertCheck::date_time>("date_time"),
    Column<&tblAlertCheck::alert_sent>("alert_sent", wexpol::kStrictBool),
};

constexpr char kReplace[] =
    "INSERT OR REPLACE INTO alert_checks(alert_event_type_id, date_time, alert_sent) "
    "VALUES(?, ?, ?)";

}  // namespace

const wexpol::Table& CAlertCheck::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("alert_checks", "alert_check", kColumns, {.insert = kReplace});
  return table;
}

bool CAlertCheck::GetRecord(sqlite3* db, long type_id) {
  return wexpol::QueryRecord(*this, db, "SELECT * FROM alert_checks WHERE alert_event_type_id=?",
                             type_id);
}

std::int64_t CAlertCheck::GetTime(sqlite3* db, long type_id) {
  CAlertCheck check;
  check.GetRecord(db, type_id);
  return check.date_time;
}

bool CAlertCheck::UpdateAlertCheck(sqlite3* db, long type_id, bool sent) {
  return wexpol::Execute(db, kReplace, type_id, wexpol::NowUtc(), sent);
}

bool CAlertCheck::StartTimer(sqlite3* db, long type_id) {
  // What another process has written since the timer was looked for stays.
  return wexpol::Execute(db,
                         "INSERT OR IGNORE INTO alert_checks(alert_event_type_id, date_time, "
                         "alert_sent) VALUES(?, ?, 0)",
                         type_id, wexpol::NowUtc());
}

long CAlertCheck::GetSecondsRemaining(sqlite3* db, long type_id, std::uint64_t period) {
  CAlertCheck check;
  if (check.GetRecord(db, type_id)) return check.SecondsRemaining(period);
  StartTimer(db, type_id);
  return static_cast<std::int32_t>(period);
}

// Unsigned: after the clock was set back, a start in the future makes the check due at once.
long CAlertCheck::SecondsRemaining(std::uint64_t period) const {
  const std::uint64_t elapsed = Elapsed();
  return elapsed < period ? static_cast<std::int32_t>(period - elapsed) : 0;
}

bool CAlertCheck::DidPreviousAlertFail(sqlite3* db, long type_id) {
  CAlertCheck check;
  return !check.GetRecord(db, type_id) || !check.alert_sent;
}

// Signed: after the clock was set back, a start in the future goes on suppressing.
bool CAlertCheck::Suppresses(std::int64_t duration) const {
  return alert_sent && static_cast<std::int64_t>(Elapsed()) < duration;
}

std::uint64_t CAlertCheck::Elapsed() const {
  return static_cast<std::uint64_t>(wexpol::NowUtc()) - static_cast<std::uint64_t>(date_time);
}
