// The facade's operations over the tables of accounts, devices and logins.

#include <algorithm>

#include "wexpol/identity/account.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/device_group.h"
#include "wexpol/identity/login.h"
#include "wexpol/identity/login_detail.h"
#include "wexpol/identity/nic.h"
#include "wexpol/policydb/facade.h"
#include "wexpol/records/document.h"

namespace {

// Updates the rows of an array of objects or of one object, up to the first that fails.
template <typename Record, typename Parse>
bool UpdateRows(sqlite3* db, const char* json, Parse&& parse, std::string& error) {
  if (!db) {
    error = wexpol::FailureObject(db, SQLITE_MISUSE);
    return false;
  }
  wexpol::Document document;
  const rapidjson::Value& root = document.root();
  const bool is_array = document.Parse(json) && root.IsArray();
  const wexpol::Records rows =
      is_array ? wexpol::Records{root.Begin(), root.Size()} : wexpol::Records{&root, 1};
  return std::all_of(rows.first, rows.first + rows.count, [&](const rapidjson::Value& value) {
    Record record;
    const bool parsed = value.IsObject() && parse(record, value);
    const int code = parsed ? record.UpdateDB(db) : wexpol::kNoCode;
    if (code != SQLITE_DONE) error = wexpol::FailureObject(db, code);
    return code == SQLITE_DONE;
  });
}

// Deletes the row of the record's key.
template <typename Record>
bool DeleteRow(sqlite3* db, const Record* record) {
  Record key;
  if (record) key.id = record->id;
  return record && key.DelFromDB(db) == SQLITE_DONE;
}

}  // namespace

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
  return wexpol::Ask([&] {
    const int code = wexpol::AddObject(
        handle(), device, json,
        [device](const rapidjson::Value& value) { return device->ParseJson(value, true); });
    if (code != SQLITE_DONE) {
      m_error = wexpol::FailureObject(handle(), code, wexpol::kObjectJsonError);
    }
    return code == SQLITE_DONE;
  });
}

bool CPolicyDB::UpdateDevices(const char* json) {
  const auto parse = [](CDevice& device, const rapidjson::Value& value) {
    return device.ParseJson(value, true);
  };
  return wexpol::Ask([&] { return UpdateRows<CDevice>(handle(), json, parse, m_error); });
}

bool CPolicyDB::UpdateNics(const char* json) {
  const auto parse = [](CNic& nic, const rapidjson::Value& value) { return nic.ParseJson(value); };
  return wexpol::Ask([&] { return UpdateRows<CNic>(handle(), json, parse, m_error); });
}

bool CPolicyDB::DeleteDevice(const CDevice* device) {
  return wexpol::Ask([&] { return DeleteRow(handle(), device); });
}

bool CPolicyDB::DeleteNic(const CNic* nic) {
  return wexpol::Ask([&] { return DeleteRow(handle(), nic); });
}

bool CPolicyDB::GetDevice(CDevice* device, long id) {
  return wexpol::Ask([&] { return device && device->SpecialGetFromDB(handle(), id); });
}

bool CPolicyDB::GetNic(CNic* nic, const unsigned char* mac) {
  return wexpol::Ask([&] { return nic && nic->GetRecord(handle(), mac); });
}

long CPolicyDB::GetDeviceID(const unsigned char* mac) {
  return wexpol::Ask(-1L, [&] { return CNic::GetDeviceID(handle(), mac); });
}

bool CPolicyDB::DoesMacAddrExist(const unsigned char* mac, long deviceId) {
  return wexpol::Ask([&] { return CNic::DoesMacAddrExist(handle(), mac, deviceId); });
}

bool CPolicyDB::GetLogin(CLogin& login, long id) { return ReadByKey(login, id); }

bool CPolicyDB::UpdateLoginDetails(CLoginDetail* detail) {
  return wexpol::Ask([&] {
    return detail && CLoginDetail::UpdateLoginDetails(handle(), detail->id, detail->browser);
  });
}
