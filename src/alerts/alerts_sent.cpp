#include "alerts/alerts_sent.h"

#include "records/query.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAlertsSent::id>("id", records::kKey | records::kAssignedByDb),
    Column<&tblAlertsSent::event_type_id>("event_type_id"),
    Column<&tblAlertsSent::event_time>("event_time"),
};

}  // namespace

const records::Table& CAlertsSent::Table() {
  static const records::Table& table = *new records::Table("alerts_sent", "alert_sent", kColumns);
  return table;
}

CAlertsSent::CAlertsSent(short kind) { event_type_id = kind; }

bool CAlertsSent::WasSent(sqlite3* db, short kind) {
  records::Statement select(db, "SELECT id FROM alerts_sent WHERE event_type_id=?");
  if (!select.ok()) return false;
  records::kInt16.bind(&kind, select, 1);
  if (!select.ok()) throw select.code();
  return select.Row();
}

bool CAlertsSent::WasSentBefore(sqlite3* db, short kind, std::int64_t time) {
  return records::QueryExists(
      db, "SELECT id FROM alerts_sent WHERE event_type_id=? AND event_time<?", kind, time);
}

int CAlertsSent::DeleteByType(sqlite3* db, short kind) {
  if (kind < 1) return records::Statement(db, "DELETE FROM alerts_sent").Step();
  return records::Statement(db, "DELETE FROM alerts_sent WHERE event_type_id=?", kind).Step();
}
