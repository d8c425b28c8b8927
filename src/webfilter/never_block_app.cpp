#include "webfilter/never_block_app.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblNeverBlockApp::id>("id", records::kKey | records::kRequired),
    Column<&tblNeverBlockApp::file_name>("file_name"),
    Column<&tblNeverBlockApp::row_version>("row_version"),
};

}  // namespace

const records::Table& CNeverBlockApp::Table() {
  static const records::Table& table =
      *new records::Table("never_block_apps", "never_block_app", kColumns);
  return table;
}
