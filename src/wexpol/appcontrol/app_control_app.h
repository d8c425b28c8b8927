// The programs of the rule sets: table "app_control_apps".

#ifndef WEXPOL_APPCONTROL_APP_CONTROL_APP_H_
#define WEXPOL_APPCONTROL_APP_CONTROL_APP_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblAppControlApp {
  std::int32_t id = -1;
  std::int16_t app_id = -1;          // Row of "apps".
  std::int32_t app_control_id = -1;  // The rule set.
};

// One program of one rule set.
class WEXPOL_API CAppControlApp : public wexpol::Record<CAppControlApp, tblAppControlApp> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_APPCONTROL_APP_CONTROL_APP_H_
