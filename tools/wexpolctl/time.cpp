// wexpolctl time: the time zone of this device and the time servers.

#include <cstdio>
#include <set>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/platform/system_types.h"

namespace wexpolctl {
namespace {

// "last Sun of month 10 at 03:00", as a zone's record tells a change.
std::string ChangeOf(const SYSTEMTIME& date) {
  if (date.wMonth == 0) return "none";
  constexpr const char* kWeeks[] = {"first", "second", "third", "fourth", "last"};
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  char time[48];
  std::snprintf(time, sizeof time, " of month %u at %02u:%02u", unsigned{date.wMonth},
                unsigned{date.wHour}, unsigned{date.wMinute});
  const bool is_rule = date.wYear == 0 && date.wDay >= 1 && date.wDay <= 5 && date.wDayOfWeek <= 6;
  const std::string day = is_rule
                              ? std::string(kWeeks[date.wDay - 1]) + " " + kDays[date.wDayOfWeek]
                              : "day " + std::to_string(date.wDay);
  return day + time;
}

ExitCode Time(Call& call) {
  Database database(call.database, Database::kAsk);
  constexpr long kUntouched = INT32_MIN;
  TIME_ZONE_INFORMATION zone{};
  zone.Bias = kUntouched;
  std::set<std::string> servers;
  const bool known = database.session().GetTimeInfo(&zone, servers);
  if (zone.Bias != kUntouched) {
    call.report.Add("bias in minutes", Number(zone.Bias));
    call.report.Add("standard time from", Text(ChangeOf(zone.StandardDate)));
    call.report.Add("standard bias", Number(zone.StandardBias));
    call.report.Add("daylight time from", Text(ChangeOf(zone.DaylightDate)));
    call.report.Add("daylight bias", Number(zone.DaylightBias));
  }
  Listing& listing = call.report.AddListing("servers", {"time server"});
  for (const std::string& server : servers) listing.Add({Text(server)});
  if (known && zone.Bias != kUntouched) return kDone;
  throw Failure{kFinding, "No time zone is known for this device.",
                "Synchronise devices, accounts and time_zones."};
}

}  // namespace

Command TimeCommand() {
  return {"time", "Show this device's time zone and the time servers", {}, &Time};
}

}  // namespace wexpolctl
