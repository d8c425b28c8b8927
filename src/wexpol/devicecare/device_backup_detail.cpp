#include "wexpol/devicecare/device_backup_detail.h"

#include "wexpol/platform/file_paths.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblDeviceBackupDetail::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblDeviceBackupDetail::device_id>("device_id"),
    Column<&tblDeviceBackupDetail::name>("name"),
    Column<&tblDeviceBackupDetail::login>("login"),
    Column<&tblDeviceBackupDetail::password>("password"),
    Column<&tblDeviceBackupDetail::shadow_protect_license_key>("shadow_protect_license_key"),
    Column<&tblDeviceBackupDetail::egr_license_key>("egr_license_key"),
};

}  // namespace

const wexpol::Table& CDeviceBackupDetail::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("device_backup_details", "device_backup_detail", kColumns);
  return table;
}

bool CDeviceBackupDetail::GetRecord(sqlite3* db, long wanted, std::string& error) {
  const wexpol::ReadScope scope(db);
  return wexpol::ReadRecord(*this, error, db, Table().select_by_key(), wanted) ||
         wexpol::ReadRecord(*this, error, db,
                            "SELECT * FROM device_backup_details WHERE device_id=?", wanted);
}

bool CDeviceBackupDetail::IsValid() const { return id > 0 && login; }

bool CDeviceBackupDetail::BuildInstallCmdLineParameters(std::wstring& out) const {
  if (!login || !password) return false;
  out = L"-s -l \"" + CFilePaths::GetOlbInstallLogFilePath() + L"\"";
  return true;
}

bool CDeviceBackupDetail::BuildBackUpNowCmdLineParameters(std::wstring& out) const {
  if (!login) return false;
  out = L"backupnow " + std::wstring(login) + L" -silent";
  return true;
}

bool CDeviceBackupDetail::BuildUICmdLineParameters(std::wstring& out) const {
  if (!login || !password) return false;
  out = L"-username:" + std::wstring(login) + L" -password:" + password.get();
  return true;
}
