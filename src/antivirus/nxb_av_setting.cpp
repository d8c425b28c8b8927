#include "antivirus/nxb_av_setting.h"

#include "records/query.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblNxbAvSetting::id>("id", records::kKey | records::kRequired),
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

const records::Table& CNxbAvSetting::Table() {
  static const records::Table& table =
      *new records::Table("nxb_av_settings", "nxb_av_setting", kColumns);
  return table;
}

bool CNxbAvSetting::IsValid() const {
  return nxb_settings_id != nullptr && nxb_settings_id.view() != kNoSettings;
}

bool CNxbAvSetting::SpecialGetFromDB(sqlite3* db) {
  return records::QueryRecord(*this, db, records::Sql::Permanent(Table().select_sql()));
}

bool CNxbAvSetting::GetDownloadUrl(std::string& url, sqlite3* db) {
  return records::QueryText(url, db, "SELECT download_url FROM nxb_av_settings");
}
