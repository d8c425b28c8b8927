// Which alerts the partner's sales are told of: table "sales_alert_options". Only kept here.

#ifndef WEXPOL_ALERTS_SALES_ALERT_OPTION_H_
#define WEXPOL_ALERTS_SALES_ALERT_OPTION_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblSalesAlertOption {
  std::int32_t id = -1;
  std::int32_t partner_id = -1;  // Who sells the account its services.
  bool av_enabled = false;
  bool backup_enabled = false;
  bool cpu_enabled = false;
  bool disk_enabled = false;
  bool filter_enabled = false;
  bool ram_enabled = false;
};

// The choice of one partner.
class WEXPOL_API CSalesAlertOption : public wexpol::Record<CSalesAlertOption, tblSalesAlertOption> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_ALERTS_SALES_ALERT_OPTION_H_
