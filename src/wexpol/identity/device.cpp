#include "wexpol/identity/device.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "wexpol/identity/machine_id.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kStrict;
using wexpol::kStrictFlag16;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblDevice::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblDevice::account_id>("account_id", kStrict),
    Column<&tblDevice::policy_id>("policy_id", kStrict),
    Column<&tblDevice::device_type_id>("device_type_id", kStrict),
    Column<&tblDevice::operating_system_id>("operating_system_id", kStrict),
    Column<&tblDevice::device_status_id>("device_status_id", kStrict),
    Column<&tblDevice::name>("name", kStrict),
    Column<&tblDevice::description>("description"),
    Column<&tblDevice::comment>("comment"),
    Column<&tblDevice::ccl_id>("ccl_id"),
    Column<&tblDevice::token>("token"),
    Column<&tblDevice::time_zone_id>("time_zone_id"),
    Column<&tblDevice::manufacturer>("manufacturer"),
    Column<&tblDevice::domain>("domain"),
    Column<&tblDevice::wan_ip>("wan_ip"),
    Column<&tblDevice::device_group_id>("device_group_id"),
    Column<&tblDevice::is_master>("is_master", kStrictFlag16),
    Column<&tblDevice::allow_remote_connection>("allow_remote_connection", kStrictFlag16),
    Column<&tblDevice::device_detection_enabled>("device_detection_enabled", kStrictFlag16),
    Column<&tblDevice::install_invite_id>("install_invite_id"),
    Column<&tblDevice::device_uid>("device_uid"),
    Column<&tblDevice::midex>("midex"),
    Column<&tblDevice::os_display>("os_display"),
    Column<&tblDevice::os_build>("os_build"),
    Column<&tblDevice::os_internal_version>("os_internal_version"),
};

constexpr char kNics[] = "nics";

}  // namespace

const wexpol::Table& CDevice::Table() {
  static const wexpol::Table& table = *new wexpol::Table("devices", "device", kColumns);
  return table;
}

void CDevice::Reset(bool free) {
  Record::Reset(free);
  if (free) {
    nics_.Clear();
  } else {
    nics_.Release();
  }
}

bool CDevice::ParseJson(const rapidjson::Value& value) { return ParseJson(value, false); }

bool CDevice::ParseJson(const rapidjson::Value& value, bool strict) {
  Reset(true);
  if (!wexpol::ParseRow(Table(), &row(), value, strict)) return false;
  const auto nics = value.FindMember(kNics);
  if (nics == value.MemberEnd() || !nics->value.IsArray()) return true;
  for (const rapidjson::Value& element : nics->value.GetArray()) {
    auto nic = std::make_unique<CNic>();
    if (nic->ParseJson(element)) nics_.Append(std::move(nic));
  }
  return true;
}

bool CDevice::ParseJson(const char* json, bool strict) {
  wexpol::Document document;
  return document.Parse(json) && ParseJson(document.root(), strict);
}

void CDevice::GenerateJson(std::string& out) const { Record::GenerateJson(out); }

void CDevice::GenerateJson(std::string& out, const std::list<CNic*>* nics) const {
  Record::GenerateJson(out);
  if (!nics) return;
  out.pop_back();
  if (out.back() != '{') out += ',';
  out.append("\"").append(kNics).append("\": [");
  const char* separator = "";
  for (const CNic* nic : *nics) {
    out += separator;
    nic->GenerateJson(out);
    separator = ",";
  }
  out += "]}";
}

bool CDevice::ParseJsonForId(const char* json) {
  wexpol::Document document;
  if (!document.Parse(json) || !document.root().IsObject()) return false;
  const auto member = document.root().FindMember("id");
  if (member == document.root().MemberEnd() || !member->value.IsInt()) return false;
  id = member->value.GetInt();
  return true;
}

bool CDevice::Take(CDevice&& device, sqlite3* db, long nics_of) {
  std::string unused;
  if (!wexpol::ListRecords(db, device.nics_.items(), "device_id", nics_of, unused)) return false;
  *this = std::move(device);
  return true;
}

bool CDevice::SpecialGetFromDB(sqlite3* db, long device_id) {
  const wexpol::ReadScope scope(db);
  CDevice device;
  const bool found =
      device_id == -1
          ? wexpol::QueryRecord(device, db, "SELECT * FROM devices WHERE token IS NOT NULL")
          : wexpol::QueryRecord(device, db, Table().select_by_key(), device_id);
  return found && Take(std::move(device), db, device_id);
}

bool CDevice::GetMasterAgentForThisLAN(sqlite3* db, long device_id) {
  const wexpol::ReadScope scope(db);
  CDevice master;
  // The interfaces are those of the device that asks, not of the master.
  return wexpol::QueryRecord(master, db,
                             "SELECT * FROM devices WHERE wan_ip IN "
                             "(SELECT wan_ip FROM devices WHERE id=?) AND is_master=1",
                             device_id) &&
         Take(std::move(master), db, device_id);
}

bool CDevice::GetToken(wchar_t** out, sqlite3* db, long device_id) {
  *out = nullptr;
  std::string narrow;
  if (!GetToken(narrow, db, device_id)) return false;
  *out = wexpol::ToWide(narrow.c_str()).release();
  return true;
}

bool CDevice::GetToken(std::string& out, sqlite3* db, long device_id) {
  if (device_id < 1) return wexpol::QueryText(out, db, "SELECT token FROM devices");
  return wexpol::QueryText(out, db, "SELECT token FROM devices WHERE id=?", device_id);
}

bool CDevice::UpdateDeviceStatus(sqlite3* db, long device_id, DEVICE_STATUS status) {
  return wexpol::Execute(db, "UPDATE devices SET device_status_id=? WHERE id=?", status, device_id);
}

bool CDevice::IsVncConnectionAllowed(sqlite3* db, long device_id) {
  return wexpol::QueryInt(db, "SELECT allow_remote_connection FROM devices WHERE id=?", device_id)
             .value_or(0) != 0;
}

bool CDevice::IsDeviceDetectionEnabled(sqlite3* db, long device_id) {
  return wexpol::QueryInt(db, "SELECT device_detection_enabled FROM devices WHERE id=?", device_id)
             .value_or(1) != 0;
}

bool CDevice::operator==(const CDevice& other) const {
  return (name == nullptr) == (other.name == nullptr) &&
         wexpol::EqualIgnoringCase(name.view(), other.name.view());
}

bool CDevice::SetName() {
  const std::optional<std::wstring> host = wexpol::ComputerDnsHostName();
  name = host ? host->c_str() : nullptr;
  return host.has_value();
}

bool CDevice::GetNameW(std::wstring& out) const {
  if (name == nullptr) return false;
  out = name.view();
  return true;
}

bool CDevice::GetNameA(std::string& out) const {
  if (name == nullptr) return false;
  out = wexpol::WideToUtf8(name.view());
  return true;
}

bool CDevice::GetNameA(char* out, int size) const {
  std::string narrow;
  if (!out || !GetNameA(narrow) || size < 0 || narrow.size() >= static_cast<std::size_t>(size)) {
    return false;
  }
  std::copy_n(narrow.c_str(), narrow.size() + 1, out);
  return true;
}

void CDevice::SetDomain(const char* utf8) { domain = wexpol::ToWide(utf8); }

bool CDevice::GenerateCclId() {
  const std::string machine_id = wexpol::MachineId();
  if (machine_id.empty()) return false;
  ccl_id = machine_id.c_str();
  return true;
}

bool CDevice::WriteCclIdToRegistry() {
  const std::size_t blank = ccl_id.view().find(' ');
  return blank != std::string_view::npos &&
         wexpol::StoreInstallationId(ccl_id.view().substr(0, blank));
}
