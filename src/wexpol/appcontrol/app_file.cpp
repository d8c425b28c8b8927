#include "wexpol/appcontrol/app_file.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAppFile::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAppFile::app_id>("app_id"),
    Column<&tblAppFile::name>("name"),
};

}  // namespace

const wexpol::Table& CAppFile::Table() {
  static const wexpol::Table& table = *new wexpol::Table("app_files", "app_file", kColumns);
  return table;
}
