#include "webfilter/filter_category.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblFilterCategory::id>("id", records::kKey | records::kRequired),
    Column<&tblFilterCategory::category_id>("category_id"),
    Column<&tblFilterCategory::filter_setting_id>("filter_setting_id"),
    Column<&tblFilterCategory::filter_action_id>("filter_action_id"),
};

}  // namespace

const records::Table& CFilterCategory::Table() {
  static const records::Table& table =
      *new records::Table("filter_categories", "filter_category", kColumns);
  return table;
}
