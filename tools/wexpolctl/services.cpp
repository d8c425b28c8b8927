// wexpolctl services and options: the protection services of this device.

#include <algorithm>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/records/query.h"
#include "wexpol/services/device_service.h"
#include "wexpol/services/service.h"
#include "wexpol/services/service_attempts.h"

namespace wexpolctl {
namespace {

// Nothing where the agent does not count.
Cell AttemptsLeft(CPolicyDB& session, short service, const wchar_t* format) {
  short count;
  if (!session.ReadServiceAttemptsFromRegistry(count, service, format)) return Nothing();
  return Number(std::max(0, wexpol::kMaxAttempts - count));
}

ExitCode Services(Call& call) {
  Database database(call.database, Database::kAsk);
  CPolicyDB& session = database.session();
  const auto device = LocalDeviceId(database.handle());
  if (!device) {
    throw Failure{kFinding, "This computer is none of the devices in the database.",
                  "Synchronise the devices; see 'wexpolctl identity'."};
  }
  Listing& listing = call.report.AddListing(
      "services", {"id", "service", "status", "available", "installed", "enabled", "install needed",
                   "downloads left", "installs left"});
  std::vector<std::string> unasked;
  wexpol::Statement select(database.handle(),
                           "SELECT id, name FROM services UNION SELECT service_id, NULL FROM "
                           "device_services WHERE device_id=?1 AND service_id NOT IN (SELECT id "
                           "FROM services) ORDER BY id",
                           *device);
  ForEachRow(select, [&] {
    const std::int64_t number = select.Int64(0);
    const auto id = static_cast<short>(number);
    if (id != number) return unasked.push_back(std::to_string(number));
    CDeviceService service;
    const bool has_row = service.Get(database.handle(), *device, id);
    listing.Add({Number(id), select.IsNull(1) ? Nothing() : Text(select.Text(1)),
                 has_row ? Number(service.device_service_status_id) : Nothing(),
                 Flag(session.IsServiceAvailable(id)), Flag(session.IsServiceInstalled(id)),
                 Flag(session.IsServiceEnabled(id, true)),
                 Flag(session.IsServiceInstallNeeded(id, *device)),
                 AttemptsLeft(session, id, wexpol::kDownloadAttempts),
                 AttemptsLeft(session, id, wexpol::kInstallAttempts)});
  });
  for (const std::string& id : unasked) {
    call.report.AddLine("The agent knows no service " + id + ": its ids have 16 bits.");
  }
  if (listing.empty()) call.report.AddLine("There are no services.");
  return kDone;
}

ExitCode InstallerOptions(Call& call) {
  Database database(call.database, Database::kAsk);
  CDeviceService antivirus;
  if (!database.session().GetDeviceService(antivirus, wexpol::kAntivirusService)) {
    throw Failure{kFinding, "This device has no antivirus service.",
                  "Synchronise devices and device_services; see 'wexpolctl services'."};
  }
  std::string options;
  antivirus.BuildCustonIni(options);
  call.report.AddBlock("options", options);
  return kDone;
}

}  // namespace

Command ServicesCommand() {
  return {"services", "Show the state of each service on this device", {}, &Services};
}

Command OptionsCommand() {
  return {"options", "Print the options of the antivirus installer", {}, &InstallerOptions};
}

}  // namespace wexpolctl
