#include "appcontrol/app_file.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAppFile::id>("id", records::kKey | records::kRequired),
    Column<&tblAppFile::app_id>("app_id"),
    Column<&tblAppFile::name>("name"),
};

}  // namespace

const records::Table& CAppFile::Table() {
  static const records::Table& table = *new records::Table("app_files", "app_file", kColumns);
  return table;
}
