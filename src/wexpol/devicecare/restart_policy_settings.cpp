#include "wexpol/devicecare/restart_policy_settings.h"

#include "wexpol/devicecare/brand.h"
#include "wexpol/devicecare/safe_reboot.h"
#include "wexpol/platform/files.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblRestartPolicySettings::id>("id", wexpol::kKey | wexpol::kRequired),
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

const wexpol::Table& CRestartPolicySettings::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("restart_policy_settings", "restart_policy_setting", kColumns);
  return table;
}

void CRestartPolicySettings::GetIvantiSafeRebootCommandLineOptions(
    std::wstring& out, const wchar_t* title, const wchar_t* serviceName) const {
  const bool under_system = wexpol::IsProcessRunningAsServiceUnderSYSTEM(wexpol::CurrentUserName());
  out = wexpol::SafeRebootCommandLine(*this, wexpol::BrandOf(wexpol::ReadBrandInfo()), under_system,
                                      title, serviceName);
}
