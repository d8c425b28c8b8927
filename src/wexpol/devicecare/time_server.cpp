#include "wexpol/devicecare/time_server.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblTimeServer::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblTimeServer::url>("url"),
    Column<&tblTimeServer::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CTimeServer::Table() {
  static const wexpol::Table& table = *new wexpol::Table("time_servers", "time_server", kColumns);
  return table;
}
