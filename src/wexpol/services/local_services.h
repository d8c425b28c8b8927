// What the agent asks about the services of the local device.

#ifndef WEXPOL_SERVICES_LOCAL_SERVICES_H_
#define WEXPOL_SERVICES_LOCAL_SERVICES_H_

#include <set>

class CAvComponents;
class CDeviceService;
struct sqlite3;

namespace wexpol {

// A question that fails, and one about a device that is not known, answers false.

// Takes the row of a service.
bool GetLocalService(sqlite3* db, CDeviceService& service, short service_id);
// Takes the components of the antivirus service.
bool GetLocalAvComponents(sqlite3* db, CAvComponents& components);
// Adds the services to be upgraded automatically: those of all devices when the local one is not
// known. False when the statement fails.
bool GetLocalServicesToUpgrade(sqlite3* db, std::set<short>& services);

// Whether an installation is to be done: for a device id below 0 that of the local device. Whether
// the service is switched on has no say.
bool IsServiceInstallNeeded(sqlite3* db, short service_id, long device_id);
bool IsServiceInstalled(sqlite3* db, short service_id);
// The same, switched on and of an active account.
bool IsServiceInstalledAndEnabled(sqlite3* db, short service_id);
// Switched on, whatever the state of its installation. The account must be there and, when that is
// asked for, active.
bool IsServiceEnabled(sqlite3* db, short service_id, bool require_active_account);
// As CDeviceService::IsServiceAvailable says of its row.
bool IsServiceAvailable(sqlite3* db, short service_id);

}  // namespace wexpol

#endif  // WEXPOL_SERVICES_LOCAL_SERVICES_H_
