#include "wexpol/webfilter/never_block_app.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblNeverBlockApp::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblNeverBlockApp::file_name>("file_name"),
    Column<&tblNeverBlockApp::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CNeverBlockApp::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("never_block_apps", "never_block_app", kColumns);
  return table;
}
