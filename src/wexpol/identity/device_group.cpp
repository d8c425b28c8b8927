#include "wexpol/identity/device_group.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblDeviceGroup::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblDeviceGroup::account_id>("account_id"),
    Column<&tblDeviceGroup::name>("name"),
    Column<&tblDeviceGroup::is_default>("is_default", wexpol::kFlag16),
};

}  // namespace

const wexpol::Table& CDeviceGroup::Table() {
  static const wexpol::Table& table = *new wexpol::Table("device_groups", "device_group", kColumns);
  return table;
}
