#include "wexpol/antivirus/nxb_av_setting.h"

#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblNxbAvSetting::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblNxbAvSetting::policy_service_id>("policy_service_id"),
    Column<&tblNxbAvSetting::nxb_settings_id>("nxb_settings_id"),
    Column<&tblNxbAvSetting::download_url>("download_url"),
    Column<&tblNxbAvSetting::public_key>("public_key"),
    Column<&tblNxbAvSetting::license>("license"),
    Column<&tblNxbAvSetting::config>("config"),
    Column<&tblNxbAvSetting::ini_file>("ini_file"),
    Column<&tblNxbAvSetting::wexupd_file>("wexupd_file"),
};

constexpr char kNoSettings[] = "DEADBEEF";

}  // namespace

const wexpol::Table& CNxbAvSetting::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("nxb_av_settings", "nxb_av_setting", kColumns);
  return table;
}

bool CNxbAvSetting::IsValid() const {
  return nxb_settings_id != nullptr && nxb_settings_id.view() != kNoSettings;
}

bool CNxbAvSetting::SpecialGetFromDB(sqlite3* db) {
  return wexpol::QueryRecord(*this, db, Table().select());
}

bool CNxbAvSetting::GetDownloadUrl(std::string& url, sqlite3* db) {
  return wexpol::QueryText(url, db, "SELECT download_url FROM nxb_av_settings");
}
