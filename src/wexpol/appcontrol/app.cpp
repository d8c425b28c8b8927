#include "wexpol/appcontrol/app.h"

#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblApp::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblApp::app_type_id>("app_type_id"),
    Column<&tblApp::name>("name"),
};

}  // namespace

const wexpol::Table& CApp::Table() {
  static const wexpol::Table& table = *new wexpol::Table("apps", "app", kColumns);
  return table;
}

bool CApp::SpecialGet(sqlite3* db, long app_id) {
  return wexpol::QueryRecord(*this, db, Table().select_by_key(), app_id);
}
