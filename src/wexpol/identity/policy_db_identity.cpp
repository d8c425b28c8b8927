// The facade's operations over the tables of accounts, devices and logins.

#include "wexpol/identity/account.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/device_documents.h"
#include "wexpol/identity/device_group.h"
#include "wexpol/identity/login.h"
#include "wexpol/identity/login_detail.h"
#include "wexpol/identity/nic.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::AskAndTell;

bool CPolicyDB::ClearAndAddAccounts(const char* json) { return ClearAndAdd<CAccount>(json); }
bool CPolicyDB::GetRecord(CAccount& account) { return ReadFirst(account); }

bool CPolicyDB::ClearAndAddDevices(const char* json) { return ClearAndAdd<CDevice>(json); }
bool CPolicyDB::GetDevices(std::list<CDevice*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddNics(const char* json) { return Add<CNic>(json); }
bool CPolicyDB::ClearNics() { return Clear<CNic>(); }
bool CPolicyDB::GetNics(std::list<CNic*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddLogins(const char* json) { return Add<CLogin>(json); }
bool CPolicyDB::ClearLogins() { return Clear<CLogin>(); }
bool CPolicyDB::GetLogins(std::list<CLogin*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddLoginDetails(const char* json) { return Add<CLoginDetail>(json); }
bool CPolicyDB::InsertLoginDetails(const char* json) { return AddLoginDetails(json); }
bool CPolicyDB::ClearLoginDetails() { return Clear<CLoginDetail>(); }
bool CPolicyDB::GetLoginDetails(std::list<CLoginDetail*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddDeviceGroups(const char* json) { return Add<CDeviceGroup>(json); }
bool CPolicyDB::ClearDeviceGroups() { return Clear<CDeviceGroup>(); }

bool CPolicyDB::AddDevice(CDevice* device, const char* json) {
  return AskAndTell(m_error, [&] { return wexpol::AddDevice(handle(), device, json, m_error); });
}
bool CPolicyDB::UpdateDevices(const char* json) {
  return AskAndTell(m_error, [&] { return wexpol::UpdateDevices(handle(), json, m_error); });
}
bool CPolicyDB::UpdateNics(const char* json) {
  return AskAndTell(m_error, [&] { return wexpol::UpdateNics(handle(), json, m_error); });
}

bool CPolicyDB::DeleteDevice(const CDevice* device) {
  return device && Ask([&] { return wexpol::DeleteById<CDevice>(handle(), device->id); });
}

bool CPolicyDB::DeleteNic(const CNic* nic) {
  return nic && Ask([&] { return wexpol::DeleteById<CNic>(handle(), nic->id); });
}

bool CPolicyDB::GetDevice(CDevice* device, long id) {
  return device && Ask([&] { return device->SpecialGetFromDB(handle(), id); });
}

bool CPolicyDB::GetNic(CNic* nic, const unsigned char* mac) {
  return nic && Ask([&] { return nic->GetRecord(handle(), mac); });
}

long CPolicyDB::GetDeviceID(const unsigned char* mac) {
  return Ask(-1L, [&] { return CNic::GetDeviceID(handle(), mac); });
}

bool CPolicyDB::DoesMacAddrExist(const unsigned char* mac, long deviceId) {
  return Ask([&] { return CNic::DoesMacAddrExist(handle(), mac, deviceId); });
}

bool CPolicyDB::GetLogin(CLogin& login, long id) { return ReadByKey(login, id); }

bool CPolicyDB::UpdateLoginDetails(CLoginDetail* detail) {
  return detail && Ask([&] {
           return CLoginDetail::UpdateLoginDetails(handle(), detail->id, detail->browser);
         });
}
