#include "appcontrol/app_control.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAppControl::id>("id", records::kKey | records::kRequired),
    Column<&tblAppControl::policy_service_id>("policy_service_id"),
    Column<&tblAppControl::enabled>("enabled"),
};

}  // namespace

const records::Table& CAppControl::Table() {
  static const records::Table& table = *new records::Table("app_controls", "app_control", kColumns);
  return table;
}
