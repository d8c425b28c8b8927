#include "wexpol/identity/local_device.h"

#include "wexpol/identity/device_group.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace wexpol {

bool GetLocalDevice(sqlite3* db, CDevice& device) {
  long stored = -1;
  CDeviceInfo::GetDeviceID(&stored);
  const ReadScope scope(db);
  if (!device.SpecialGetFromDB(db, stored)) return false;
  if (stored >= 0) return true;
  CDeviceInfo::WriteDeviceID(&device);
  // Once more by its own id, for its interfaces.
  return device.SpecialGetFromDB(db, device.id);
}

long LocalDeviceId(sqlite3* db) {
  long stored = -1;
  CDeviceInfo::GetDeviceID(&stored);
  if (stored != -1) return stored;
  CDevice device;
  return GetLocalDevice(db, device) && device.id >= 1 ? device.id : -1;
}

bool GetLocalDeviceToken(sqlite3* db, std::string& token) {
  const ReadScope scope(db);
  CDevice device;
  return GetLocalDevice(db, device) && CDevice::GetToken(token, db, device.id);
}

bool GetLocalDeviceGroupName(sqlite3* db, std::wstring& name, std::string& error) {
  const ReadScope scope(db);
  CDevice device;
  CDeviceGroup group;
  const Sql by_key = CDeviceGroup::Table().select_by_key();
  if (!GetLocalDevice(db, device) ||
      !ReadRecord(group, error, db, by_key, device.device_group_id)) {
    return false;
  }
  name = group.name.view();
  return true;
}

bool IsLocalDeviceDetectionEnabled(sqlite3* db) {
  CDevice device;
  return GetLocalDevice(db, device) && device.device_detection_enabled == 1;
}

bool IsLocalVncConnectionAllowed(sqlite3* db) {
  return AskLocalDevice(db, false,
                        [&](long id) { return CDevice::IsVncConnectionAllowed(db, id); });
}

long LocalDevicePolicyId(sqlite3* db) {
  CDevice device;
  return GetLocalDevice(db, device) ? device.policy_id : -1;
}

bool GetMasterOfLocalDevice(sqlite3* db, CDevice& master, CDevice& self) {
  const ReadScope scope(db);
  return GetLocalDevice(db, self) && master.GetMasterAgentForThisLAN(db, self.id);
}

bool SetDeviceStatus(sqlite3* db, long id, DEVICE_STATUS status) {
  const long device_id = id < 1 ? LocalDeviceId(db) : id;
  return device_id >= 1 && CDevice::UpdateDeviceStatus(db, device_id, status);
}

bool StoreDeviceOfMachine(sqlite3* db, long id) {
  CDevice device;
  if (!device.SpecialGetFromDB(db, id) && !GetLocalDevice(db, device)) return false;
  device.WriteCclIdToRegistry();
  return CDeviceInfo::WriteDeviceID(&device);
}

}  // namespace wexpol
