#include "webfilter/filter_proxy_port.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblFilterProxyPort::id>("id", records::kKey | records::kRequired),
    Column<&tblFilterProxyPort::filter_setting_id>("filter_setting_id"),
    Column<&tblFilterProxyPort::port>("port"),
    Column<&tblFilterProxyPort::description>("description"),
};

}  // namespace

const records::Table& CFilterProxyPort::Table() {
  static const records::Table& table =
      *new records::Table("filter_proxy_ports", "filter_proxy_port", kColumns);
  return table;
}
