#include "wexpol/webfilter/filter_proxy_port.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblFilterProxyPort::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblFilterProxyPort::filter_setting_id>("filter_setting_id"),
    Column<&tblFilterProxyPort::port>("port"),
    Column<&tblFilterProxyPort::description>("description"),
};

}  // namespace

const wexpol::Table& CFilterProxyPort::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("filter_proxy_ports", "filter_proxy_port", kColumns);
  return table;
}
