#include "webfilter/proxy_port.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblProxyPort::id>("id", records::kKey | records::kRequired),
    Column<&tblProxyPort::port>("port"),
    Column<&tblProxyPort::description>("description"),
};

// Names three columns for four parameters on purpose: the engine must keep refusing it.
constexpr char kInsert[] = "INSERT INTO proxy_ports(id,port,description) VALUES(?,?,?,?)";

}  // namespace

const records::Table& CProxyPort::Table() {
  static const records::Table& table =
      *new records::Table("proxy_ports", "proxy_port", kColumns, {.insert = kInsert});
  return table;
}
