// The protection services that the console offers: table "services".

#ifndef SERVICES_SERVICE_H_
#define SERVICES_SERVICE_H_

#include <cstdint>

#include "records/record.h"

struct tblService {
  std::int32_t id = -1;
  records::Text name;
  std::int64_t row_version = -1;
};

class WEXPOL_API CService : public records::Record<CService, tblService> {
 public:
  static const records::Table& Table();

  // Always: filtering is set for the machine, not for a login.
  static bool IsFilterMachineOriented(sqlite3*) { return true; }
};

#endif  // SERVICES_SERVICE_H_
