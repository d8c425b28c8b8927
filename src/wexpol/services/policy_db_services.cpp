// The facade's operations over the services of policies and devices.

#include "wexpol/identity/local_device.h"
#include "wexpol/policydb/diagnostic_log.h"
#include "wexpol/policydb/facade.h"
#include "wexpol/services/av_components.h"
#include "wexpol/services/device_service.h"
#include "wexpol/services/device_subservice_version.h"
#include "wexpol/services/policy_service.h"
#include "wexpol/services/service.h"
#include "wexpol/services/service_attempts.h"

namespace {

// -1 when the local device is not known.
long LocalDeviceId(sqlite3* db) {
  long id;
  wexpol::GetLocalDeviceId(db, id);
  return id;
}

// What `question` answers about the local device; false when that is not known.
template <typename Question>
bool AskLocalDevice(sqlite3* db, Question&& question) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(db);
    const long device_id = LocalDeviceId(db);
    return device_id >= 1 && question(device_id);
  });
}

constexpr short kAttemptsStartAgain = 3;

}  // namespace

bool CPolicyDB::ClearAndAddServices(const char* json) { return ClearAndAdd<CService>(json); }
bool CPolicyDB::AddPolicyServices(const char* json) { return Add<CPolicyService>(json); }
bool CPolicyDB::ClearPolicyServices() { return Clear<CPolicyService>(); }
bool CPolicyDB::AddDeviceServices(const char* json) { return Add<CDeviceService>(json); }
bool CPolicyDB::ClearDeviceServices() { return Clear<CDeviceService>(); }
bool CPolicyDB::GetDeviceServices(std::list<CDeviceService*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::IsDeviceServiceAvailable(long deviceId, short serviceId) {
  return wexpol::Ask(
      [&] { return CDeviceService::IsDeviceServiceAvailable(handle(), deviceId, serviceId); });
}

bool CPolicyDB::SetDeviceServiceInfo(long id, const char* column, short value) {
  return wexpol::Ask(
      [&] { return CDeviceService::SetDeviceServiceInfo(handle(), id, column, value); });
}

bool CPolicyDB::GetDeviceService(CDeviceService& service, short serviceId) {
  return AskLocalDevice(
      handle(), [&](long device_id) { return service.Get(handle(), device_id, serviceId); });
}

bool CPolicyDB::GetAvComponents(CAvComponents& components) {
  return AskLocalDevice(handle(),
                        [&](long device_id) { return components.Get(handle(), device_id); });
}

bool CPolicyDB::GetServicesMarkedForAutoUpgrade(std::set<short>& services) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    return CDeviceService::GetServicesMarkedForAutoUpgrade(handle(), services,
                                                           LocalDeviceId(handle()));
  });
}

bool CPolicyDB::IsServiceInstallNeeded(short serviceId, long deviceId) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    return wexpol::QueryExists(handle(),
                               "SELECT enabled FROM device_services WHERE device_id=? AND "
                               "service_id=? AND device_service_status_id IN (1, 2, 3)",
                               deviceId < 0 ? LocalDeviceId(handle()) : deviceId, serviceId);
  });
}

bool CPolicyDB::IsServiceInstalled(short serviceId) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    return wexpol::QueryExists(handle(),
                               "SELECT enabled FROM device_services WHERE device_id=? AND "
                               "service_id=? AND device_service_status_id=4",
                               LocalDeviceId(handle()), serviceId);
  });
}

bool CPolicyDB::IsServiceInstalledAndEnabled(short serviceId) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    const auto enabled = wexpol::QueryInt(
        handle(),
        "SELECT enabled FROM device_services ds INNER JOIN devices d ON d.id=ds.device_id "
        "INNER JOIN accounts a ON a.id=d.account_id WHERE ds.device_id=? AND ds.service_id=? "
        "AND account_status_id=1 AND device_service_status_id=4",
        LocalDeviceId(handle()), serviceId);
    return enabled.value_or(0) != 0;
  });
}

bool CPolicyDB::IsServiceEnabled(short serviceId, bool requireActiveAccount) {
  return AskLocalDevice(handle(), [&](long device_id) {
    const auto enabled = wexpol::QueryInt(
        handle(),
        "SELECT ds.enabled FROM device_services ds INNER JOIN devices d ON ds.device_id=d.id "
        "INNER JOIN accounts ac ON ac.id=d.account_id WHERE d.id=?1 AND ds.service_id=?2 "
        "AND (NOT ?3 OR ac.account_status_id=1)",
        device_id, serviceId, requireActiveAccount);
    return enabled.value_or(0) != 0;
  });
}

bool CPolicyDB::IsServiceAvailable(short serviceId) {
  CDeviceService service;
  return GetDeviceService(service, serviceId) && service.IsServiceAvailable();
}

bool CPolicyDB::ReadServiceAttemptsFromRegistry(short& count, short serviceId,
                                                const wchar_t* format) {
  return wexpol::Ask([&] { return wexpol::ReadAttempts(count, serviceId, format); });
}

bool CPolicyDB::WriteServiceAttemptsToRegistry(short serviceId, short count,
                                               const wchar_t* format) {
  return wexpol::Ask([&] { return wexpol::WriteAttempts(serviceId, count, format); });
}

bool CPolicyDB::SetServiceStatus(short serviceId, short statusId) {
  return statusId == kAttemptsStartAgain &&
         wexpol::Ask([&] { return wexpol::RestartAttempts(serviceId); });
}

int CPolicyDB::IncrementServiceAttempts(short serviceId, const wchar_t* format) {
  return wexpol::Ask(-1, [&] { return wexpol::CountAttempt(serviceId, format); });
}
int CPolicyDB::IncrementServiceInstallAttempts(short serviceId) {
  return IncrementServiceAttempts(serviceId, wexpol::kInstallAttempts);
}
int CPolicyDB::IncrementServiceDownloadAttempts(short serviceId) {
  return IncrementServiceAttempts(serviceId, wexpol::kDownloadAttempts);
}

bool CPolicyDB::HasExceededServiceInstallAttempts(short serviceId) {
  return wexpol::Ask(
      [&] { return wexpol::HasExceededAttempts(serviceId, wexpol::kInstallAttempts); });
}
bool CPolicyDB::HasExceededServiceDownloadAttempts(short serviceId) {
  return wexpol::Ask(
      [&] { return wexpol::HasExceededAttempts(serviceId, wexpol::kDownloadAttempts); });
}

bool CPolicyDB::ClearAndAddDeviceSubserviceVersions(const char* json) {
  return ClearAndAdd<CDeviceSubserviceVersion>(json);
}

bool CPolicyDB::GetDeviceSubserviceVersion(CDeviceSubserviceVersion* record, short subserviceId) {
  return record && ReadByKey(*record, subserviceId);
}

bool CPolicyDB::UpdateDeviceSubserviceVersion(CDeviceSubserviceVersion* record, const char* json) {
  return record &&
         wexpol::Ask([&] { return record->UpdateDeviceSubserviceVersion(handle(), json); });
}
