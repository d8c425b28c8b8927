#include "wexpol/services/service.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblService::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblService::name>("name"),
    Column<&tblService::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CService::Table() {
  static const wexpol::Table& table = *new wexpol::Table("services", "service", kColumns);
  return table;
}
