#include "webfilter/icat_keyword.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblIcatKeyword::id>("id", records::kKey | records::kRequired),
    Column<&tblIcatKeyword::word>("word"),
    Column<&tblIcatKeyword::row_version>("row_version"),
};

}  // namespace

const records::Table& CIcatKeyword::Table() {
  static const records::Table& table =
      *new records::Table("icat_keywords", "icat_keyword", kColumns);
  return table;
}
