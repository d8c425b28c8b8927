// The time zone of this device and the time servers that it may ask.

#ifndef WEXPOL_DEVICECARE_TIME_INFO_H_
#define WEXPOL_DEVICECARE_TIME_INFO_H_

#include <set>
#include <string>

#include "wexpol/platform/system_types.h"

struct sqlite3;

namespace wexpol {

// Fills `zone` with the time zone of the local device, else with that of the account, without its
// names. False when the zone is not stored or not decodable. When none is assigned `zone` is left
// alone, and the answer is whether the local device is known.
//
// In any case the addresses of all time servers are added; when they cannot be read `error` has the
// error object, which does not change the answer.
bool GetTimeInfo(sqlite3* db, TIME_ZONE_INFORMATION* zone, std::set<std::string>& server_urls,
                 std::string& error);

}  // namespace wexpol

#endif  // WEXPOL_DEVICECARE_TIME_INFO_H_
