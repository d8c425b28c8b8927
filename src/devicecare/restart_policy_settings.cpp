#include "devicecare/restart_policy_settings.h"

#include "devicecare/brand.h"
#include "devicecare/safe_reboot.h"
#include "platform/files.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblRestartPolicySettings::id>("id", records::kKey | records::kRequired),
    Column<&tblRestartPolicySettings::policy_id>("policy_id"),
    Column<&tblRestartPolicySettings::restart_required_option_id>("restart_required_option_id"),
    Column<&tblRestartPolicySettings::force_action_time>("force_action_time"),
    Column<&tblRestartPolicySettings::display_dialog_countdown>("display_dialog_countdown"),
    Column<&tblRestartPolicySettings::display_system_countdown>("display_system_countdown"),
    Column<&tblRestartPolicySettings::user_can_extend_time>("user_can_extend_time"),
    Column<&tblRestartPolicySettings::user_extend_time>("user_extend_time"),
    Column<&tblRestartPolicySettings::user_cancel_timeout_logs_off>("user_cancel_timeout_logs_off"),
    Column<&tblRestartPolicySettings::user_cancel_timeout_restart>("user_cancel_timeout_restart"),
};

}  // namespace

const records::Table& CRestartPolicySettings::Table() {
  static const records::Table& table =
      *new records::Table("restart_policy_settings", "restart_policy_setting", kColumns);
  return table;
}

void CRestartPolicySettings::GetIvantiSafeRebootCommandLineOptions(
    std::wstring& out, const wchar_t* title, const wchar_t* serviceName) const {
  const bool under_system =
      devicecare::IsProcessRunningAsServiceUnderSYSTEM(platform::CurrentUserName());
  out = devicecare::SafeRebootCommandLine(*this, devicecare::BrandOf(devicecare::ReadBrandInfo()),
                                          under_system, title, serviceName);
}
