#include "wexpol/identity/network.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblNetwork::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblNetwork::account_id>("account_id"),
    Column<&tblNetwork::wan_ip>("wan_ip"),
};

}  // namespace

const wexpol::Table& CNetwork::Table() {
  static const wexpol::Table& table = *new wexpol::Table("networks", "network", kColumns);
  return table;
}
