// The facade's operations that start from the local device.

#include "wexpol/identity/local_device.h"
#include "wexpol/identity/local_logins.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::AskAndTell;

bool CPolicyDB::GetThisDevice(CDevice& device) {
  return Ask([&] { return wexpol::GetLocalDevice(handle(), device); });
}

bool CPolicyDB::GetThisDeviceId(long& id) {
  id = Ask(-1L, [&] { return wexpol::LocalDeviceId(handle()); });
  return id != -1;
}

bool CPolicyDB::GetDeviceToken(std::string& token) {
  return Ask([&] { return wexpol::GetLocalDeviceToken(handle(), token); });
}

bool CPolicyDB::WriteDeviceIdToRegistry(long id) {
  return Ask([&] { return wexpol::StoreDeviceOfMachine(handle(), id); });
}

bool CPolicyDB::GetMasterAgentForThisLAN(CDevice& master, CDevice& self) {
  return Ask([&] { return wexpol::GetMasterOfLocalDevice(handle(), master, self); });
}

bool CPolicyDB::IsDeviceDetectionEnabled() {
  return Ask([&] { return wexpol::IsLocalDeviceDetectionEnabled(handle()); });
}

bool CPolicyDB::IsVncConnectionAllowed() {
  return Ask([&] { return wexpol::IsLocalVncConnectionAllowed(handle()); });
}

bool CPolicyDB::SetDeviceStatus(long id, short status) {
  return Ask(
      [&] { return wexpol::SetDeviceStatus(handle(), id, static_cast<DEVICE_STATUS>(status)); });
}

bool CPolicyDB::GetDeviceGroupName(std::wstring& name) {
  return AskAndTell(m_error,
                    [&] { return wexpol::GetLocalDeviceGroupName(handle(), name, m_error); });
}

long CPolicyDB::GetLoginId(const wchar_t* name) {
  return Ask(-1L, [&] { return wexpol::LocalLoginId(handle(), name); });
}

bool CPolicyDB::CheckLoginDetails(const wchar_t* loginName, const char* browserPath) {
  return Ask([&] { return wexpol::IsBrowserOfLocalLogin(handle(), loginName, browserPath); });
}

long CPolicyDB::GetPolicyId(const wchar_t* loginName) {
  return Ask(-1L, [&] { return wexpol::LocalLoginPolicyId(handle(), loginName); });
}

long CPolicyDB::GetPolicyIdFromDeviceId() {
  return Ask(-1L, [&] { return wexpol::LocalDevicePolicyId(handle()); });
}
