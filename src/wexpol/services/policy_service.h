// The services of each policy: table "policy_services".

#ifndef WEXPOL_SERVICES_POLICY_SERVICE_H_
#define WEXPOL_SERVICES_POLICY_SERVICE_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblPolicyService {
  std::int32_t id = -1;          // The `policy_service_id` of settings tables.
  std::int32_t policy_id = -1;   // Row of "policies".
  std::int32_t service_id = -1;  // Row of "services".
  bool enabled = false;
};

// One service under one policy, on or off.
class WEXPOL_API CPolicyService : public wexpol::Record<CPolicyService, tblPolicyService> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_SERVICES_POLICY_SERVICE_H_
