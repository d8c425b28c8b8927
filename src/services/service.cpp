#include "services/service.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblService::id>("id", records::kKey | records::kRequired),
    Column<&tblService::name>("name"),
    Column<&tblService::row_version>("row_version"),
};

}  // namespace

const records::Table& CService::Table() {
  static const records::Table& table = *new records::Table("services", "service", kColumns);
  return table;
}
