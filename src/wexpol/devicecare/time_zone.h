// The time zones that devices and accounts can have: table "time_zones".

#ifndef WEXPOL_DEVICECARE_TIME_ZONE_H_
#define WEXPOL_DEVICECARE_TIME_ZONE_H_

#include <cstdint>

#include "wexpol/platform/system_types.h"
#include "wexpol/records/record.h"

namespace wexpol {

// Decodes the 44 bytes of a REG_TZI_FORMAT: for each byte two hexadecimal digits and any one
// character. False, and `record` untouched, for a null text or one of less than 131 characters.
WEXPOL_API bool DecodeTimeZoneRecord(void* record, const char* text);

}  // namespace wexpol

struct tblTimeZone {
  std::int16_t id = -1;
  wexpol::Text name;
  wexpol::Text windows_data;      // The system's record of the zone, as text.
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// A time zone as the system describes it. The same for all customers.
class WEXPOL_API CTimeZone : public wexpol::Record<CTimeZone, tblTimeZone> {
 public:
  static const wexpol::Table& Table();

  // Takes the row of that id; false, and the record untouched, when there is none.
  bool GetRecord(sqlite3* db, short zone_id);

  // As DecodeTimeZoneRecord. Inline, so that it takes the structure that the host knows.
  static bool ConvertCommaSeparatedWindowsDataToTZI(REG_TZI_FORMAT* out, const char* text) {
    return wexpol::DecodeTimeZoneRecord(out, text);
  }

  // Takes the row of that id into the record and its decoded zone, without the names, into `out`.
  // False, and `out` untouched, when there is no such row or its text cannot be decoded.
  bool GetTimeZoneInformation(TIME_ZONE_INFORMATION* out, sqlite3* db, short zone_id);
};

#endif  // WEXPOL_DEVICECARE_TIME_ZONE_H_
