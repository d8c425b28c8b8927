#include "appcontrol/app_control_app.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAppControlApp::id>("id", records::kKey | records::kRequired),
    Column<&tblAppControlApp::app_id>("app_id"),
    Column<&tblAppControlApp::app_control_id>("app_control_id"),
};

}  // namespace

const records::Table& CAppControlApp::Table() {
  static const records::Table& table =
      *new records::Table("app_control_apps", "app_control_app", kColumns);
  return table;
}
