#include "appcontrol/app.h"

#include "records/query.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblApp::id>("id", records::kKey | records::kRequired),
    Column<&tblApp::app_type_id>("app_type_id"),
    Column<&tblApp::name>("name"),
};

}  // namespace

const records::Table& CApp::Table() {
  static const records::Table& table = *new records::Table("apps", "app", kColumns);
  return table;
}

bool CApp::SpecialGet(sqlite3* db, long app_id) {
  return records::QueryRecord(*this, db, records::Sql::Permanent(Table().select_by_key_sql()),
                              app_id);
}
