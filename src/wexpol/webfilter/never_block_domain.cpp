#include "wexpol/webfilter/never_block_domain.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblNeverBlockDomain::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblNeverBlockDomain::domain>("domain"),
    Column<&tblNeverBlockDomain::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CNeverBlockDomain::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("never_block_domains", "never_block_domain", kColumns);
  return table;
}
