#include "wexpol/devicecare/safe_reboot.h"

#include <cstdint>

#include "wexpol/devicecare/restart_policy_settings.h"

namespace wexpol {
namespace {

enum RestartRequiredOption : std::int16_t { kNoRestart = 0, kRestartNow = 1, kAskUser = 2 };

constexpr int kUserCanExtend = 1;
constexpr int kTimeoutLogsOff = 2;
constexpr int kTimeoutRestarts = 4;

std::wstring AskUserOptions(const tblRestartPolicySettings& policy) {
  std::wstring options;
  int flags = 0;
  if (policy.user_can_extend_time) {
    flags += kUserCanExtend;
    if (policy.user_extend_time > 0) {
      options += L"-i " + std::to_wstring(policy.user_extend_time) + L" ";
    }
  }
  // A countdown that was never received is -1 and is passed on as such, here and below.
  if (policy.display_system_countdown != 0) {
    options += L"-w " + std::to_wstring(policy.display_system_countdown) + L" ";
  }
  if (policy.user_cancel_timeout_logs_off) flags += kTimeoutLogsOff;
  if (policy.user_cancel_timeout_restart) flags += kTimeoutRestarts;
  return options + L"-o " + std::to_wstring(flags) + L" -s " +
         std::to_wstring(policy.display_dialog_countdown) + L" -m " +
         std::to_wstring(policy.force_action_time) + L" ";
}

}  // namespace

bool IsProcessRunningAsServiceUnderSYSTEM(std::wstring_view user_name) {
  return user_name == L"SYSTEM";
}

std::wstring SafeRebootCommandLine(const tblRestartPolicySettings& policy, Brand brand,
                                   bool under_system, const wchar_t* title,
                                   const wchar_t* service_name) {
  if (policy.restart_required_option_id == kNoRestart) return {};

  const std::wstring maker = brand == Brand::kQel ? L"Qel" : L"Zentra";
  std::wstring line = L"-n \"" + maker + L" Corvane - " + (title ? title : L"Restart Required");
  line += L"\" -u \"";
  line += service_name ? service_name : maker + L" Antivirus Service";
  line += L"\" -power 4 ";
  if (!under_system) line += L"-demo -us ";

  switch (policy.restart_required_option_id) {
    case kRestartNow:
      line += L" -o 8 ";  // its own blank follows that of the piece before
      break;
    case kAskUser:
      line += AskUserOptions(policy);
      break;
    default:
      break;
  }
  return line;
}

}  // namespace wexpol
