#include "wexpol/appcontrol/app_control_app.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAppControlApp::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAppControlApp::app_id>("app_id"),
    Column<&tblAppControlApp::app_control_id>("app_control_id"),
};

}  // namespace

const wexpol::Table& CAppControlApp::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("app_control_apps", "app_control_app", kColumns);
  return table;
}
