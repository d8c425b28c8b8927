// wexpolctl identity: which device this computer is, and how it would authenticate.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/machine_id.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/requests/auth_info.h"

namespace wexpolctl {
namespace {

// A machine id is two words with a blank between.
struct Words {
  explicit Words(const std::string& machine_id)
      : installation(machine_id.substr(0, machine_id.find(' '))),
        hardware(machine_id.substr(std::min(machine_id.size(), installation.size() + 1))) {}
  std::string installation;
  std::string hardware;
};

// Whether a word of this computer is that of its row.
Cell Agrees(const std::string& here, const std::string& row) {
  return here.empty() || row.empty() ? Nothing() : Flag(here == row);
}

void ReportRow(const CDevice& device, Report& report) {
  report.Add("device id", Number(device.id));
  report.Add("name", Text(device.name.view()));
  report.Add("account id", Number(device.account_id));
  report.Add("policy id", Number(device.policy_id));
  report.Add("network interfaces", Number(static_cast<std::int64_t>(device.nics().size())));
}

void ReportMachineId(const std::string& of_row, Report& report) {
  const Words here(wexpol::MachineId());
  const Words row(of_row);
  report.Add("installation word", here.installation.empty() ? Nothing() : Text(here.installation));
  report.Add("installation word agrees", Agrees(here.installation, row.installation));
  report.Add("hardware word", here.hardware.empty() ? Nothing() : Text(here.hardware));
  report.Add("hardware word agrees", Agrees(here.hardware, row.hardware));
}

// The name of the header line only: its value is the secret.
void ReportCredential(sqlite3* db, long device_id, Report& report) {
  CAuthInfo info;
  const bool found = info.Read(db, false, device_id, true);
  report.Add("credential", found ? Text(info.header_name) : Text("none: X-Api-Token, nobody"));
  report.Add("account disabled", Flag(info.account_disabled));
}

ExitCode Identity(Call& call) {
  Database database(call.database, Database::kAsk);
  sqlite3* db = database.handle();
  long stored;
  const bool is_stored = CDeviceInfo::GetDeviceID(&stored);
  call.report.Add("stored id", is_stored ? Number(stored) : Nothing());

  CDevice device;
  const auto id = LocalDeviceId(db);
  if (!id || !device.SpecialGetFromDB(db, *id)) {
    ReportMachineId({}, call.report);
    throw Failure{kFinding, "This computer is none of the devices in the database.",
                  is_stored ? "Synchronise the devices: the row of the stored id is missing."
                            : "Synchronise the devices: no row carries a token."};
  }
  ReportRow(device, call.report);
  ReportMachineId(std::string(device.ccl_id.view()), call.report);
  ReportCredential(db, device.id, call.report);
  return kDone;
}

}  // namespace

Command IdentityCommand() {
  return {
      "identity", "Show which device this computer is, and its credential by name", {}, &Identity};
}

}  // namespace wexpolctl
