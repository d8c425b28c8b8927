#include "wexpol/webfilter/filter_category.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblFilterCategory::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblFilterCategory::category_id>("category_id"),
    Column<&tblFilterCategory::filter_setting_id>("filter_setting_id"),
    Column<&tblFilterCategory::filter_action_id>("filter_action_id"),
};

}  // namespace

const wexpol::Table& CFilterCategory::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("filter_categories", "filter_category", kColumns);
  return table;
}
