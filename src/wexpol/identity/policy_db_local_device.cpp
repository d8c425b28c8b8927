// The facade's operations that start from the local device.

#include "wexpol/identity/auth_info.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/device_group.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/identity/login.h"
#include "wexpol/identity/login_detail.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::GetLocalDevice;
using wexpol::GetLocalDeviceId;
using wexpol::ReadScope;

bool CPolicyDB::GetThisDevice(CDevice& device) {
  return Ask([&] { return GetLocalDevice(handle(), device); });
}

bool CPolicyDB::GetThisDeviceId(long& id) {
  return Ask([&] { return GetLocalDeviceId(handle(), id); });
}

bool CPolicyDB::GetDeviceToken(std::string& token) {
  return Ask([&] {
    const ReadScope scope(handle());
    CDevice device;
    return GetLocalDevice(handle(), device) && CDevice::GetToken(token, handle(), device.id);
  });
}

bool CPolicyDB::AddUserInfoToUrl(std::string& url) {
  return Ask([&] {
    const ReadScope scope(handle());
    long id;
    std::string token;
    if (!GetLocalDeviceId(handle(), id) || id < 1) return false;
    if (!CDevice::GetToken(token, handle(), id)) return false;
    url += "?dt=" + token;
    return true;
  });
}

bool CPolicyDB::GetAuthInfo(CAuthInfo& info, bool failIfDisabled, long deviceId,
                            bool allowInviteToken) {
  return Ask([&] { return info.Read(handle(), failIfDisabled, deviceId, allowInviteToken); });
}

bool CPolicyDB::WriteDeviceIdToRegistry(long id) {
  return Ask([&] {
    CDevice device;
    if (!device.SpecialGetFromDB(handle(), id) && !GetLocalDevice(handle(), device)) return false;
    device.WriteCclIdToRegistry();
    return CDeviceInfo::WriteDeviceID(&device);
  });
}

bool CPolicyDB::GetMasterAgentForThisLAN(CDevice& master, CDevice& self) {
  return Ask([&] {
    const ReadScope scope(handle());
    return GetLocalDevice(handle(), self) && master.GetMasterAgentForThisLAN(handle(), self.id);
  });
}

bool CPolicyDB::IsDeviceDetectionEnabled() {
  return Ask([&] {
    CDevice device;
    return GetLocalDevice(handle(), device) && device.device_detection_enabled == 1;
  });
}

bool CPolicyDB::SetDeviceStatus(long id, short status) {
  return Ask([&] {
    long device_id = id;
    if (device_id < 1 && !GetLocalDeviceId(handle(), device_id)) return false;
    if (device_id < 1) return false;
    return CDevice::UpdateDeviceStatus(handle(), device_id, static_cast<DEVICE_STATUS>(status));
  });
}

bool CPolicyDB::GetDeviceGroupName(std::wstring& name) {
  return Ask([&] {
    const ReadScope scope(handle());
    CDevice device;
    CDeviceGroup group;
    if (!GetLocalDevice(handle(), device) || !ReadByKey(group, device.device_group_id)) {
      return false;
    }
    name = group.name.view();
    return true;
  });
}

long CPolicyDB::GetLoginId(const wchar_t* name) {
  return Ask(-1L, [&]() -> long {
    const ReadScope scope(handle());
    long device_id;
    CLogin login;
    if (!GetLocalDeviceId(handle(), device_id) || device_id < 1) return -1;
    return login.GetLogin(handle(), device_id, name) ? login.id : -1;
  });
}

bool CPolicyDB::CheckLoginDetails(const wchar_t* loginName, const char* browserPath) {
  return Ask([&] {
    const ReadScope scope(handle());
    long device_id;
    if (!GetLocalDeviceId(handle(), device_id) || device_id < 1) return false;
    return CLoginDetail().CheckDefaultBrowser(device_id, loginName, browserPath, handle());
  });
}
