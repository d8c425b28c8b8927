// How the device restarts when it has to: table "restart_policy_settings".

#ifndef WEXPOL_DEVICECARE_RESTART_POLICY_SETTINGS_H_
#define WEXPOL_DEVICECARE_RESTART_POLICY_SETTINGS_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblRestartPolicySettings {
  std::int32_t id = -1;
  std::int32_t policy_id = -1;                   // Row of "policies".
  std::int16_t restart_required_option_id = -1;  // 0 no restart, 1 at once, 2 ask the user.
  std::int16_t force_action_time = -1;           // Times are passed to the tool as they are.
  std::int16_t display_dialog_countdown = -1;
  std::int16_t display_system_countdown = -1;
  bool user_can_extend_time = true;
  std::int16_t user_extend_time = -1;
  bool user_cancel_timeout_logs_off = false;
  bool user_cancel_timeout_restart = false;
};

// Whether the user may delay or refuse a restart that is due.
class WEXPOL_API CRestartPolicySettings
    : public wexpol::Record<CRestartPolicySettings, tblRestartPolicySettings> {
 public:
  static const wexpol::Table& Table();

  // Replaces `out` with the command line of the safe-reboot tool, for the brand of the agent and
  // the user of this process; empty when no restart is wanted. A null title or service name is
  // that of the brand.
  void GetIvantiSafeRebootCommandLineOptions(std::wstring& out, const wchar_t* title,
                                             const wchar_t* serviceName) const;
};

#endif  // WEXPOL_DEVICECARE_RESTART_POLICY_SETTINGS_H_
