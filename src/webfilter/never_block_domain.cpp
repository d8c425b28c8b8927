#include "webfilter/never_block_domain.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblNeverBlockDomain::id>("id", records::kKey | records::kRequired),
    Column<&tblNeverBlockDomain::domain>("domain"),
    Column<&tblNeverBlockDomain::row_version>("row_version"),
};

}  // namespace

const records::Table& CNeverBlockDomain::Table() {
  static const records::Table& table =
      *new records::Table("never_block_domains", "never_block_domain", kColumns);
  return table;
}
