#include "wexpol/appcontrol/app_control.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAppControl::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAppControl::policy_service_id>("policy_service_id"),
    Column<&tblAppControl::enabled>("enabled"),
};

}  // namespace

const wexpol::Table& CAppControl::Table() {
  static const wexpol::Table& table = *new wexpol::Table("app_controls", "app_control", kColumns);
  return table;
}
