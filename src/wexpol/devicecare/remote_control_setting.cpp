#include "wexpol/devicecare/remote_control_setting.h"

#include "wexpol/identity/local_device.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblRemoteControlSetting::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblRemoteControlSetting::policy_service_id>("policy_service_id"),
    Column<&tblRemoteControlSetting::consent_message>("consent_message"),
    Column<&tblRemoteControlSetting::consent_timeout>("consent_timeout"),
    Column<&tblRemoteControlSetting::stream_quality_id>("stream_quality_id"),
    Column<&tblRemoteControlSetting::leave_aero>("leave_aero"),
    Column<&tblRemoteControlSetting::leave_background>("leave_background"),
    Column<&tblRemoteControlSetting::leave_effects>("leave_effects"),
    Column<&tblRemoteControlSetting::consent_required>("consent_required"),
};

constexpr std::int16_t kHighSpeed = 2;

// The console names the table with and without "premium_".
const rapidjson::Value& Unwrap(const rapidjson::Value& root) {
  return wexpol::MemberOrSelf(root, {"premium_remote_control_setting", "remote_control_setting",
                                     "premium_remote_control_settings", "remote_control_settings"});
}

const wchar_t* BoolText(bool value) { return value ? L"true" : L"false"; }

}  // namespace

const wexpol::Table& CRemoteControlSetting::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("premium_remote_control_settings", "premium_remote_control_setting",
                         kColumns, {.unwrap = &Unwrap});
  return table;
}

long CRemoteControlSetting::GetIdForThisDevice(sqlite3* db) {
  return wexpol::AskLocalDevice(db, -1L, [&](long device_id) -> long {
    return wexpol::QueryInt(db,
                            "SELECT remote_control_settings.id FROM remote_control_settings"
                            " INNER JOIN policy_services"
                            " ON policy_services.id=remote_control_settings.policy_service_id"
                            " INNER JOIN devices ON devices.policy_id=policy_services.policy_id"
                            " WHERE devices.id=?",
                            device_id)
        .value_or(-1);
  });
}

bool CRemoteControlSetting::GetForThisDevice(sqlite3* db, std::string& error) {
  const wexpol::ReadScope scope(db);
  return wexpol::ReadRecord(*this, error, db, Table().select_by_key(), GetIdForThisDevice(db));
}

std::wstring CRemoteControlSetting::GetStreamQualityCommandLineOption() const {
  return stream_quality_id == kHighSpeed ? L"&color=high_speed" : L"&color=64k";
}

std::wstring CRemoteControlSetting::GetLeaveCommandLineOptions() const {
  return std::wstring(L"&leave_aero=") + BoolText(leave_aero) + L"&leave_background=" +
         BoolText(leave_background) + L"&leave_effects=" + BoolText(leave_effects);
}
