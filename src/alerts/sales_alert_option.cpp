#include "alerts/sales_alert_option.h"

#include "records/table.h"

namespace {

using records::Column;
using records::kStrictBool;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblSalesAlertOption::id>("id", records::kKey | records::kRequired),
    Column<&tblSalesAlertOption::partner_id>("partner_id"),
    Column<&tblSalesAlertOption::av_enabled>("av_enabled", kStrictBool),
    Column<&tblSalesAlertOption::backup_enabled>("backup_enabled", kStrictBool),
    Column<&tblSalesAlertOption::cpu_enabled>("cpu_enabled", kStrictBool),
    Column<&tblSalesAlertOption::disk_enabled>("disk_enabled", kStrictBool),
    Column<&tblSalesAlertOption::filter_enabled>("filter_enabled", kStrictBool),
    Column<&tblSalesAlertOption::ram_enabled>("ram_enabled", kStrictBool),
};

}  // namespace

const records::Table& CSalesAlertOption::Table() {
  static const records::Table& table =
      *new records::Table("sales_alert_options", "sales_alert_option", kColumns);
  return table;
}
