// What the installer of the antivirus component is handed: table "nxb_av_settings".

#ifndef WEXPOL_ANTIVIRUS_NXB_AV_SETTING_H_
#define WEXPOL_ANTIVIRUS_NXB_AV_SETTING_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

// The texts are kept as the console sent them.
struct tblNxbAvSetting {
  std::int32_t id = -1;
  std::int32_t policy_service_id = -1;  // The policy service that carries the antivirus.
  wexpol::Text nxb_settings_id;         // "DEADBEEF" where there is no settings set.
  wexpol::Text download_url;            // Of the installer.
  wexpol::Text public_key;
  wexpol::Text license;
  wexpol::Text config;
  wexpol::Text ini_file;
  wexpol::Text wexupd_file;
};

// What the agent needs to install the antivirus component: where its installer is, and what it is
// handed. The table has one row at most, or only its first is used.
class WEXPOL_API CNxbAvSetting : public wexpol::Record<CNxbAvSetting, tblNxbAvSetting> {
 public:
  static const wexpol::Table& Table();

  // Whether there is a settings set.
  bool IsValid() const;

  // Takes the row; false when there is none.
  bool SpecialGetFromDB(sqlite3* db);

  // The address in the row. False, and `url` untouched, when there is none.
  static bool GetDownloadUrl(std::string& url, sqlite3* db);
};

#endif  // WEXPOL_ANTIVIRUS_NXB_AV_SETTING_H_
