// The facade's operations over remote control, restart, support display, time and invitations.

#include "wexpol/devicecare/install_invite.h"
#include "wexpol/devicecare/installation_login.h"
#include "wexpol/devicecare/remote_control_setting.h"
#include "wexpol/devicecare/restart_policy_settings.h"
#include "wexpol/devicecare/support_display_settings.h"
#include "wexpol/devicecare/time_info.h"
#include "wexpol/devicecare/time_server.h"
#include "wexpol/devicecare/time_zone.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::AskAndTell;

bool CPolicyDB::AddRemoteControlSettings(const char* json) {
  return Add<CRemoteControlSetting>(json);
}
bool CPolicyDB::ClearRemoteControlSettings() { return Clear<CRemoteControlSetting>(); }

long CPolicyDB::GetRemoteControlSettingIdForThisDevice() {
  return Ask(-1L, [&] { return CRemoteControlSetting::GetIdForThisDevice(handle()); });
}
bool CPolicyDB::GetRemoteControlSetting(CRemoteControlSetting* record) {
  return record && AskAndTell(m_error, [&] { return record->GetForThisDevice(handle(), m_error); });
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
  return AskAndTell(m_error,
                    [&] { return wexpol::GetTimeInfo(handle(), out, serverUrls, m_error); });
}

bool CPolicyDB::AddInstallInvites(const char* json) { return Add<CInstallInvite>(json); }
bool CPolicyDB::ClearInstallInvites() { return Clear<CInstallInvite>(); }

bool CPolicyDB::AddOrUpdateInstallInite(const char* json) {
  return Ask([&] { return CInstallInvite().Add2DB_or_UpdateDB(handle(), json); });
}

bool CPolicyDB::GetInstallInvite(CInstallInvite* record, long id) {
  return record && AskAndTell(m_error, [&] { return record->GetRecord(handle(), id, m_error); });
}

bool CPolicyDB::GetLumoraDownloadUrlFromInstallInvite(std::string& out, long id) {
  return Ask([&] { return CInstallInvite::GetDownloadUrl(out, handle(), id); });
}

bool CPolicyDB::ClearAndAddInstallationLogins(const char* json) {
  return ClearAndAdd<CInstallationLogin>(json);
}
bool CPolicyDB::GetInstallationLogins(std::list<CInstallationLogin*>& out) { return List(out); }
