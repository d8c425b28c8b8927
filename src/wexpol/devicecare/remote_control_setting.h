// How remote-desktop sessions run, per policy service: table "premium_remote_control_settings".

#ifndef WEXPOL_DEVICECARE_REMOTE_CONTROL_SETTING_H_
#define WEXPOL_DEVICECARE_REMOTE_CONTROL_SETTING_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblRemoteControlSetting {
  std::int32_t id = -1;
  std::int32_t policy_service_id = -1;  // Row of "policy_services".
  wexpol::Text consent_message;         // Asks the user for consent.
  std::int32_t consent_timeout = -1;
  std::int16_t stream_quality_id = -1;  // 2 is for fast networks.
  bool leave_aero = false;              // This and the next two: what a session leaves as it is.
  bool leave_background = false;
  bool leave_effects = false;
  bool consent_required = false;
};

// How the desktop is shared during a session, and whether the user is asked before.
class WEXPOL_API CRemoteControlSetting
    : public wexpol::Record<CRemoteControlSetting, tblRemoteControlSetting> {
 public:
  static const wexpol::Table& Table();

  // The id of the setting for the policy of the local device; -1 when there is none.
  static long GetIdForThisDevice(sqlite3* db);
  // Takes that setting. False when there is none or, with the error object in `error`, when it
  // cannot be read.
  bool GetForThisDevice(sqlite3* db, std::string& error);

  // Parameters to append to the URL of a session: "&color=..." and the three "&leave_...=".
  std::wstring GetStreamQualityCommandLineOption() const;
  std::wstring GetLeaveCommandLineOptions() const;
};

#endif  // WEXPOL_DEVICECARE_REMOTE_CONTROL_SETTING_H_
