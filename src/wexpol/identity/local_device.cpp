#include "wexpol/identity/local_device.h"

#include "wexpol/identity/device.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/records/statement.h"

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

bool GetLocalDeviceId(sqlite3* db, long& id) {
  id = -1;
  const bool stored = CDeviceInfo::GetDeviceID(&id);
  if (id != -1) return stored;
  CDevice device;
  if (!GetLocalDevice(db, device) || device.id < 1) return false;
  id = device.id;
  return true;
}

}  // namespace wexpol
