#include "wexpol/devicecare/remote_control_setting.h"

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

std::wstring CRemoteControlSetting::GetStreamQualityCommandLineOption() const {
  return stream_quality_id == kHighSpeed ? L"&color=high_speed" : L"&color=64k";
}

std::wstring CRemoteControlSetting::GetLeaveCommandLineOptions() const {
  return std::wstring(L"&leave_aero=") + BoolText(leave_aero) + L"&leave_background=" +
         BoolText(leave_background) + L"&leave_effects=" + BoolText(leave_effects);
}
