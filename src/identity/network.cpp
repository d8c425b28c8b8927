#include "identity/network.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblNetwork::id>("id", records::kKey | records::kRequired),
    Column<&tblNetwork::account_id>("account_id"),
    Column<&tblNetwork::wan_ip>("wan_ip"),
};

}  // namespace

const records::Table& CNetwork::Table() {
  static const records::Table& table = *new records::Table("networks", "network", kColumns);
  return table;
}
