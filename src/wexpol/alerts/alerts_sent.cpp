#include "wexpol/alerts/alerts_sent.h"

#include "wexpol/alerts/delete_by_type.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAlertsSent::id>("id", wexpol::kKey | wexpol::kAssignedByDb),
    Column<&tblAlertsSent::event_type_id>("event_type_id"),
    Column<&tblAlertsSent::event_time>("event_time"),
};

}  // namespace

const wexpol::Table& CAlertsSent::Table() {
  static const wexpol::Table& table = *new wexpol::Table("alerts_sent", "alert_sent", kColumns);
  return table;
}

CAlertsSent::CAlertsSent(short kind) { event_type_id = kind; }

bool CAlertsSent::WasSent(sqlite3* db, short kind) {
  wexpol::Statement select(db, "SELECT id FROM alerts_sent WHERE event_type_id=?");
  if (!select.ok()) return false;
  wexpol::kInt16.Bind(kind, select, 1);  // As a field is bound: -1 is NULL, which equals nothing.
  if (!select.ok()) throw select.code();
  return select.StepRow();
}

bool CAlertsSent::WasSentBefore(sqlite3* db, short kind, std::int64_t time) {
  return wexpol::QueryExists(
      db, "SELECT id FROM alerts_sent WHERE event_type_id=? AND event_time<?", kind, time);
}

int CAlertsSent::DeleteByType(sqlite3* db, short kind) {
  return wexpol::DeleteRowsOfType(db, Table(), "DELETE FROM alerts_sent WHERE event_type_id=?",
                                  kind);
}
