#include "devicecare/time_server.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblTimeServer::id>("id", records::kKey | records::kRequired),
    Column<&tblTimeServer::url>("url"),
    Column<&tblTimeServer::row_version>("row_version"),
};

}  // namespace

const records::Table& CTimeServer::Table() {
  static const records::Table& table = *new records::Table("time_servers", "time_server", kColumns);
  return table;
}
