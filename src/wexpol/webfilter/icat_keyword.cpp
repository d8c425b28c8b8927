#include "wexpol/webfilter/icat_keyword.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblIcatKeyword::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblIcatKeyword::word>("word"),
    Column<&tblIcatKeyword::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CIcatKeyword::Table() {
  static const wexpol::Table& table = *new wexpol::Table("icat_keywords", "icat_keyword", kColumns);
  return table;
}
