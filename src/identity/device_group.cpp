#include "identity/device_group.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblDeviceGroup::id>("id", records::kKey | records::kRequired),
    Column<&tblDeviceGroup::account_id>("account_id"),
    Column<&tblDeviceGroup::name>("name"),
    Column<&tblDeviceGroup::is_default>("is_default", records::kFlag16),
};

}  // namespace

const records::Table& CDeviceGroup::Table() {
  static const records::Table& table =
      *new records::Table("device_groups", "device_group", kColumns);
  return table;
}
