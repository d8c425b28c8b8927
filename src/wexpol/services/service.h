// The protection services that the console offers: table "services".

#ifndef WEXPOL_SERVICES_SERVICE_H_
#define WEXPOL_SERVICES_SERVICE_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblService {
  std::int32_t id = -1;
  wexpol::Text name;
  std::int64_t row_version = -1;
};

class WEXPOL_API CService : public wexpol::Record<CService, tblService> {
 public:
  static const wexpol::Table& Table();

  // Always: filtering is set for the machine, not for a login.
  static bool IsFilterMachineOriented(sqlite3*) { return true; }
};

#endif  // WEXPOL_SERVICES_SERVICE_H_
