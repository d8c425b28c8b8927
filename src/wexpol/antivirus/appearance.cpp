#include "wexpol/antivirus/appearance.h"

#include <cstdlib>

#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kStrictBool;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAppearance::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAppearance::av_setting_id>("av_setting_id"),
    Column<&tblAppearance::tray_notification>("tray_notification"),
    Column<&tblAppearance::user_notification>("user_notification"),
    Column<&tblAppearance::user_tray_icon_enabled>("user_tray_icon_enabled", kStrictBool),
    Column<&tblAppearance::license_upgrade_notification_enabled>(
        "license_upgrade_notification_enabled", kStrictBool),
    Column<&tblAppearance::sound_events_enabled>("sound_events_enabled", kStrictBool),
    Column<&tblAppearance::play_sounds_on_full_screen>("play_sounds_on_full_screen", kStrictBool),
    Column<&tblAppearance::browser_performance_advice_enabled>("browser_performance_advice_enabled",
                                                               kStrictBool),
    Column<&tblAppearance::content_filter_notifications>("content_filter_notifications",
                                                         kStrictBool),
    Column<&tblAppearance::lm_tray_icon_enabled>("lm_tray_icon_enabled", kStrictBool),
    Column<&tblAppearance::lm_program_menu_enabled>("lm_program_menu_enabled", kStrictBool),
    Column<&tblAppearance::shredder_visible>("shredder_visible", kStrictBool),
    Column<&tblAppearance::gamemode_on_fullscreen>("gamemode_on_fullscreen", kStrictBool),
    Column<&tblAppearance::animate_transitions>("animate_transitions", kStrictBool),
    Column<&tblAppearance::ignore_warning_components>("ignore_warning_components"),
};

}  // namespace

const wexpol::Table& CAppearance::Table() {
  static const wexpol::Table& table = *new wexpol::Table("appearances", "appearance", kColumns);
  return table;
}

bool CAppearance::SpecialGetFromDB(sqlite3* db) {
  return wexpol::QueryRecord(*this, db, "SELECT * FROM appearances");
}

bool CAppearance::GetIgnoreWarningComponentSet(std::set<long>& components) const {
  const char* piece = ignore_warning_components.get();
  if (!piece) return false;
  while (*piece) {
    if (*piece == ',') {
      ++piece;
      continue;
    }
    components.insert(std::strtol(piece, nullptr, 10));
    while (*piece && *piece != ',') ++piece;
  }
  return !components.empty();
}
