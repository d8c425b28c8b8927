#include "wexpol/webfilter/proxy_port.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblProxyPort::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblProxyPort::port>("port"),
    Column<&tblProxyPort::description>("description"),
};

// Names three columns for four parameters on purpose: the engine must keep refusing it.
constexpr char kInsert[] = "INSERT INTO proxy_ports(id,port,description) VALUES(?,?,?,?)";

}  // namespace

const wexpol::Table& CProxyPort::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("proxy_ports", "proxy_port", kColumns, {.insert = kInsert});
  return table;
}
