// The facade's operations over remote control, restart, support display, time and invitations.

#include "wexpol/devicecare/install_invite.h"
#include "wexpol/devicecare/installation_login.h"
#include "wexpol/devicecare/remote_control_setting.h"
#include "wexpol/devicecare/restart_policy_settings.h"
#include "wexpol/devicecare/support_display_settings.h"
#include "wexpol/devicecare/time_server.h"
#include "wexpol/devicecare/time_zone.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/policydb/facade.h"

namespace {

// The setting of the policy service of the local device; -1 when there is none.
long LocalRemoteControlSettingId(sqlite3* db) {
  const wexpol::ReadScope scope(db);
  long device_id;
  if (!wexpol::GetLocalDeviceId(db, device_id) || device_id < 1) return -1;
  return wexpol::QueryInt(db,
                          "SELECT remote_control_settings.id FROM remote_control_settings"
                          " INNER JOIN policy_services"
                          " ON policy_services.id=remote_control_settings.policy_service_id"
                          " INNER JOIN devices ON devices.policy_id=policy_services.policy_id"
                          " WHERE devices.id=?",
                          device_id)
      .value_or(-1);
}

// The zone of the local device, else of the account: true as well for a device without any.
bool ReadLocalTimeZone(sqlite3* db, TIME_ZONE_INFORMATION* out) {
  CDevice device;
  const bool found = wexpol::GetLocalDevice(db, device);
  std::int16_t zone_id = found ? device.time_zone_id : std::int16_t{-1};
  if (zone_id < 1) {
    zone_id = static_cast<std::int16_t>(
        wexpol::QueryInt(db, "SELECT time_zone_id FROM accounts").value_or(-1));
  }
  return zone_id < 1 ? found : CTimeZone().GetTimeZoneInformation(out, db, zone_id);
}

}  // namespace

bool CPolicyDB::AddRemoteControlSettings(const char* json) {
  return Add<CRemoteControlSetting>(json);
}
bool CPolicyDB::ClearRemoteControlSettings() { return Clear<CRemoteControlSetting>(); }

long CPolicyDB::GetRemoteControlSettingIdForThisDevice() {
  return wexpol::Ask(-1L, [&] { return LocalRemoteControlSettingId(handle()); });
}

bool CPolicyDB::GetRemoteControlSetting(CRemoteControlSetting* record) {
  if (!record) return false;
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    return ReadByKey(*record, LocalRemoteControlSettingId(handle()));
  });
}

bool CPolicyDB::IsVncConnectionAllowed() {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    long device_id;
    return wexpol::GetLocalDeviceId(handle(), device_id) && device_id >= 1 &&
           CDevice::IsVncConnectionAllowed(handle(), device_id);
  });
}

bool CPolicyDB::ClearAndAddRestartPolicySettings(const char* json) {
  return ClearAndAdd<CRestartPolicySettings>(json);
}
bool CPolicyDB::GetRestartPolicySettings(CRestartPolicySettings* record) {
  return record && ReadFirst(*record);
}

bool CPolicyDB::ClearAndAddSupportDisplaySettings(const char* json) {
  return ClearAndAdd<CSupportDisplaySettings>(json);
}
bool CPolicyDB::GetSupportDisplaySettings(CSupportDisplaySettings* record) {
  return record && ReadFirst(*record);
}
bool CPolicyDB::IsSupportDisplaySettingsAvailable() {
  CSupportDisplaySettings record;
  return ReadFirst(record);
}

bool CPolicyDB::ClearAndAddTimeZones(const char* json) { return ClearAndAdd<CTimeZone>(json); }
bool CPolicyDB::ClearAndAddTimeServers(const char* json) { return ClearAndAdd<CTimeServer>(json); }

bool CPolicyDB::GetTimeInfo(TIME_ZONE_INFORMATION* out, std::set<std::string>& serverUrls) {
  return wexpol::Ask([&] {
    const wexpol::ReadScope scope(handle());
    const bool answer = ReadLocalTimeZone(handle(), out);
    wexpol::ListStatement servers(handle(), CTimeServer::Table(), nullptr, 0);
    for (CTimeServer server; servers.Row();) {
      server.CopyFromDB(servers.get());
      if (server.url) serverUrls.emplace(server.url.view());
    }
    servers.Finish(m_error);
    return answer;
  });
}

bool CPolicyDB::AddInstallInvites(const char* json) { return Add<CInstallInvite>(json); }
bool CPolicyDB::ClearInstallInvites() { return Clear<CInstallInvite>(); }

bool CPolicyDB::AddOrUpdateInstallInite(const char* json) {
  return wexpol::Ask([&] { return CInstallInvite().Add2DB_or_UpdateDB(handle(), json); });
}

bool CPolicyDB::GetInstallInvite(CInstallInvite* record, long id) {
  if (!record) return false;
  return wexpol::Ask([&] {
    if (id < 1 && record->ReadInstallInviteIdFromRegistry()) id = record->id;
    return ReadByKey(*record, id);
  });
}

bool CPolicyDB::GetLumoraDownloadUrlFromInstallInvite(std::string& out, long id) {
  return wexpol::Ask([&] { return CInstallInvite::GetDownloadUrl(out, handle(), id); });
}

bool CPolicyDB::ClearAndAddInstallationLogins(const char* json) {
  return ClearAndAdd<CInstallationLogin>(json);
}
bool CPolicyDB::GetInstallationLogins(std::list<CInstallationLogin*>& out) { return List(out); }
