// The services of each policy: table "policy_services".

#ifndef SERVICES_POLICY_SERVICE_H_
#define SERVICES_POLICY_SERVICE_H_

#include <cstdint>

#include "records/record.h"

struct tblPolicyService {
  std::int32_t id = -1;  // The `policy_service_id` of settings tables.
  std::int32_t policy_id = -1;
  std::int32_t service_id = -1;
  bool enabled = false;
};

class WEXPOL_API CPolicyService : public records::Record<CPolicyService, tblPolicyService> {
 public:
  static const records::Table& Table();
};

#endif  // SERVICES_POLICY_SERVICE_H_
