// The facade's operations over the services of policies and devices.

#include "wexpol/policydb/facade.h"
#include "wexpol/services/device_service.h"
#include "wexpol/services/device_subservice_version.h"
#include "wexpol/services/local_services.h"
#include "wexpol/services/policy_service.h"
#include "wexpol/services/service.h"
#include "wexpol/services/service_attempts.h"

using wexpol::Ask;

bool CPolicyDB::ClearAndAddServices(const char* json) { return ClearAndAdd<CService>(json); }
bool CPolicyDB::AddPolicyServices(const char* json) { return Add<CPolicyService>(json); }
bool CPolicyDB::ClearPolicyServices() { return Clear<CPolicyService>(); }
bool CPolicyDB::AddDeviceServices(const char* json) { return Add<CDeviceService>(json); }
bool CPolicyDB::ClearDeviceServices() { return Clear<CDeviceService>(); }
bool CPolicyDB::GetDeviceServices(std::list<CDeviceService*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::IsFilterMachineOriented() { return CService::IsFilterMachineOriented(handle()); }

bool CPolicyDB::IsDeviceServiceAvailable(long deviceId, short serviceId) {
  return Ask(
      [&] { return CDeviceService::IsDeviceServiceAvailable(handle(), deviceId, serviceId); });
}
bool CPolicyDB::SetDeviceServiceInfo(long id, const char* column, short value) {
  return Ask([&] { return CDeviceService::SetDeviceServiceInfo(handle(), id, column, value); });
}

bool CPolicyDB::GetDeviceService(CDeviceService& service, short serviceId) {
  return Ask([&] { return wexpol::GetLocalService(handle(), service, serviceId); });
}
bool CPolicyDB::GetAvComponents(CAvComponents& components) {
  return Ask([&] { return wexpol::GetLocalAvComponents(handle(), components); });
}
bool CPolicyDB::GetServicesMarkedForAutoUpgrade(std::set<short>& services) {
  return Ask([&] { return wexpol::GetLocalServicesToUpgrade(handle(), services); });
}

bool CPolicyDB::IsServiceInstallNeeded(short serviceId, long deviceId) {
  return Ask([&] { return wexpol::IsServiceInstallNeeded(handle(), serviceId, deviceId); });
}
bool CPolicyDB::IsServiceInstalled(short serviceId) {
  return Ask([&] { return wexpol::IsServiceInstalled(handle(), serviceId); });
}
bool CPolicyDB::IsServiceInstalledAndEnabled(short serviceId) {
  return Ask([&] { return wexpol::IsServiceInstalledAndEnabled(handle(), serviceId); });
}
bool CPolicyDB::IsServiceEnabled(short serviceId, bool requireActiveAccount) {
  return Ask([&] { return wexpol::IsServiceEnabled(handle(), serviceId, requireActiveAccount); });
}
bool CPolicyDB::IsServiceAvailable(short serviceId) {
  return Ask([&] { return wexpol::IsServiceAvailable(handle(), serviceId); });
}

bool CPolicyDB::ReadServiceAttemptsFromRegistry(short& count, short serviceId,
                                                const wchar_t* format) {
  return Ask([&] { return wexpol::ReadAttempts(count, serviceId, format); });
}
bool CPolicyDB::WriteServiceAttemptsToRegistry(short serviceId, short count,
                                               const wchar_t* format) {
  return Ask([&] { return wexpol::WriteAttempts(serviceId, count, format); });
}
bool CPolicyDB::SetServiceStatus(short serviceId, short statusId) {
  return Ask([&] { return wexpol::StartAttempts(serviceId, statusId); });
}

int CPolicyDB::IncrementServiceAttempts(short serviceId, const wchar_t* format) {
  return Ask(-1, [&] { return wexpol::CountAttempt(serviceId, format); });
}
int CPolicyDB::IncrementServiceInstallAttempts(short serviceId) {
  return IncrementServiceAttempts(serviceId, wexpol::kInstallAttempts);
}
int CPolicyDB::IncrementServiceDownloadAttempts(short serviceId) {
  return IncrementServiceAttempts(serviceId, wexpol::kDownloadAttempts);
}

bool CPolicyDB::HasExceededServiceInstallAttempts(short serviceId) {
  return Ask([&] { return wexpol::HasExceededAttempts(serviceId, wexpol::kInstallAttempts); });
}
bool CPolicyDB::HasExceededServiceDownloadAttempts(short serviceId) {
  return Ask([&] { return wexpol::HasExceededAttempts(serviceId, wexpol::kDownloadAttempts); });
}

bool CPolicyDB::ClearAndAddDeviceSubserviceVersions(const char* json) {
  return ClearAndAdd<CDeviceSubserviceVersion>(json);
}
bool CPolicyDB::GetDeviceSubserviceVersion(CDeviceSubserviceVersion* record, short subserviceId) {
  return record && ReadByKey(*record, subserviceId);
}
bool CPolicyDB::UpdateDeviceSubserviceVersion(CDeviceSubserviceVersion* record, const char* json) {
  return record && Ask([&] { return record->UpdateDeviceSubserviceVersion(handle(), json); });
}
