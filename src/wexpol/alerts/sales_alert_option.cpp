#include "wexpol/alerts/sales_alert_option.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kStrictBool;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblSalesAlertOption::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblSalesAlertOption::partner_id>("partner_id"),
    Column<&tblSalesAlertOption::av_enabled>("av_enabled", kStrictBool),
    Column<&tblSalesAlertOption::backup_enabled>("backup_enabled", kStrictBool),
    Column<&tblSalesAlertOption::cpu_enabled>("cpu_enabled", kStrictBool),
    Column<&tblSalesAlertOption::disk_enabled>("disk_enabled", kStrictBool),
    Column<&tblSalesAlertOption::filter_enabled>("filter_enabled", kStrictBool),
    Column<&tblSalesAlertOption::ram_enabled>("ram_enabled", kStrictBool),
};

}  // namespace

const wexpol::Table& CSalesAlertOption::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("sales_alert_options", "sales_alert_option", kColumns);
  return table;
}
