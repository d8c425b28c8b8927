// The user interface of the antivirus component: table "appearances".

#ifndef WEXPOL_ANTIVIRUS_APPEARANCE_H_
#define WEXPOL_ANTIVIRUS_APPEARANCE_H_

#include <cstdint>
#include <set>

#include "wexpol/records/record.h"

// The numbers mean something to the agent and to the component only.
struct tblAppearance {
  std::int32_t id = -1;
  std::int32_t av_setting_id = -1;
  std::int16_t tray_notification = -1;
  std::int16_t user_notification = -1;
  bool user_tray_icon_enabled = false;  // From here on: what the user sees and hears.
  bool license_upgrade_notification_enabled = false;
  bool sound_events_enabled = false;
  bool play_sounds_on_full_screen = false;
  bool browser_performance_advice_enabled = false;
  bool content_filter_notifications = false;
  bool lm_tray_icon_enabled = false;
  bool lm_program_menu_enabled = false;
  bool shredder_visible = false;
  bool gamemode_on_fullscreen = false;
  bool animate_transitions = false;
  wexpol::Text ignore_warning_components;  // Numbers separated by commas.
};

// How the antivirus component shows itself to the user. The table has one row, or only its first is
// used.
class WEXPOL_API CAppearance : public wexpol::Record<CAppearance, tblAppearance> {
 public:
  static const wexpol::Table& Table();

  // Takes the first row; false when there is none.
  bool SpecialGetFromDB(sqlite3* db);

  // Adds the components whose warnings are ignored. True when the set then holds any; false for a
  // null list.
  bool GetIgnoreWarningComponentSet(std::set<long>& components) const;
};

#endif  // WEXPOL_ANTIVIRUS_APPEARANCE_H_
