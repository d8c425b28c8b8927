#include "wexpol/devicecare/time_info.h"

#include <cstdint>

#include "wexpol/devicecare/time_server.h"
#include "wexpol/devicecare/time_zone.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"

namespace wexpol {
namespace {

bool GetZone(sqlite3* db, TIME_ZONE_INFORMATION* zone) {
  CDevice device;
  const bool known = GetLocalDevice(db, device);
  std::int16_t zone_id = known ? device.time_zone_id : std::int16_t{-1};
  if (zone_id < 1) {
    zone_id =
        static_cast<std::int16_t>(QueryInt(db, "SELECT time_zone_id FROM accounts").value_or(-1));
  }
  return zone_id < 1 ? known : CTimeZone().GetTimeZoneInformation(zone, db, zone_id);
}

void AddServers(sqlite3* db, std::set<std::string>& urls, std::string& error) {
  ListStatement servers(db, CTimeServer::Table(), nullptr, 0);
  for (CTimeServer server; servers.StepRow();) {
    server.CopyFromDB(servers.get());
    if (server.url) urls.emplace(server.url.view());
  }
  static_cast<void>(servers.Finish(error));  // The answer does not depend on the servers.
}

}  // namespace

bool GetTimeInfo(sqlite3* db, TIME_ZONE_INFORMATION* zone, std::set<std::string>& server_urls,
                 std::string& error) {
  const ReadScope scope(db);
  const bool answer = GetZone(db, zone);
  AddServers(db, server_urls, error);
  return answer;
}

}  // namespace wexpol
