// The rule sets that block programs: table "app_controls".

#ifndef WEXPOL_APPCONTROL_APP_CONTROL_H_
#define WEXPOL_APPCONTROL_APP_CONTROL_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblAppControl {
  std::int32_t id = -1;
  std::int32_t policy_service_id = -1;  // Row of "policy_services", which names the policy.
  bool enabled = true;                  // A rule set that is off blocks nothing.
};

// A rule set: the programs that a policy blocks.
class WEXPOL_API CAppControl : public wexpol::Record<CAppControl, tblAppControl> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_APPCONTROL_APP_CONTROL_H_
