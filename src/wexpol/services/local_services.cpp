#include "wexpol/services/local_services.h"

#include "wexpol/identity/account.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/services/av_components.h"
#include "wexpol/services/device_service.h"

namespace wexpol {

// Some of these questions ask for a device id of 1 or more. The others pass on an id that is not
// known as -1, which no row has.

bool GetLocalService(sqlite3* db, CDeviceService& service, short service_id) {
  const ReadScope scope(db);
  return service.Get(db, LocalDeviceId(db), service_id);
}

bool GetLocalAvComponents(sqlite3* db, CAvComponents& components) {
  return AskLocalDevice(db, false, [&](long device_id) { return components.Get(db, device_id); });
}

bool GetLocalServicesToUpgrade(sqlite3* db, std::set<short>& services) {
  const ReadScope scope(db);
  return CDeviceService::GetServicesMarkedForAutoUpgrade(db, services, LocalDeviceId(db));
}

bool IsServiceInstallNeeded(sqlite3* db, short service_id, long device_id) {
  const ReadScope scope(db);
  return QueryExists(db,
                     "SELECT enabled FROM device_services WHERE device_id=? AND service_id=? "
                     "AND device_service_status_id BETWEEN ? AND ?",
                     device_id < 0 ? LocalDeviceId(db) : device_id, service_id, kServiceFirstStage,
                     kServiceLastStage);
}

bool IsServiceInstalled(sqlite3* db, short service_id) {
  const ReadScope scope(db);
  return QueryExists(db,
                     "SELECT enabled FROM device_services WHERE device_id=? AND service_id=? "
                     "AND device_service_status_id=?",
                     LocalDeviceId(db), service_id, kServiceInstalled);
}

bool IsServiceInstalledAndEnabled(sqlite3* db, short service_id) {
  const ReadScope scope(db);
  const auto enabled = QueryInt(
      db,
      "SELECT enabled FROM device_services ds INNER JOIN devices d ON d.id=ds.device_id "
      "INNER JOIN accounts a ON a.id=d.account_id WHERE ds.device_id=? AND ds.service_id=? "
      "AND account_status_id=? AND device_service_status_id=?",
      LocalDeviceId(db), service_id, ACCOUNT_STATUS_ACTIVE, kServiceInstalled);
  return enabled.value_or(0) != 0;
}

bool IsServiceEnabled(sqlite3* db, short service_id, bool require_active_account) {
  return AskLocalDevice(db, false, [&](long device_id) {
    const auto enabled = QueryInt(
        db,
        "SELECT ds.enabled FROM device_services ds INNER JOIN devices d ON ds.device_id=d.id "
        "INNER JOIN accounts ac ON ac.id=d.account_id WHERE d.id=? AND ds.service_id=? "
        "AND (NOT ? OR ac.account_status_id=?)",
        device_id, service_id, require_active_account, ACCOUNT_STATUS_ACTIVE);
    return enabled.value_or(0) != 0;
  });
}

bool IsServiceAvailable(sqlite3* db, short service_id) {
  return AskLocalDevice(db, false, [&](long device_id) {
    CDeviceService service;
    return service.Get(db, device_id, service_id) && service.IsServiceAvailable();
  });
}

}  // namespace wexpol
