// The protection services that the console offers: table "services".

#ifndef WEXPOL_SERVICES_SERVICE_H_
#define WEXPOL_SERVICES_SERVICE_H_

#include <cstdint>

#include "wexpol/records/record.h"

namespace wexpol {

// The services that are understood here; any other id is only the console's.
inline constexpr std::int16_t kAntivirusService = 1;
inline constexpr std::int16_t kOnlineBackupService = 4;

}  // namespace wexpol

struct tblService {
  std::int32_t id = -1;
  wexpol::Text name;
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// One protection service. Rows come from the console and are only kept.
class WEXPOL_API CService : public wexpol::Record<CService, tblService> {
 public:
  static const wexpol::Table& Table();

  // Whether the web filter is set up for the whole machine rather than for each login: it is, and
  // the database is not asked.
  static bool IsFilterMachineOriented(sqlite3*) { return true; }
};

#endif  // WEXPOL_SERVICES_SERVICE_H_
