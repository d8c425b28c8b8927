#include "wexpol/devicecare/account_backup_detail.h"

#include "wexpol/identity/account.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/identity/password.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"
#include "wexpol/services/service.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAccountBackupDetail::account_id>("account_id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAccountBackupDetail::sos_id>("sos_id"),
    Column<&tblAccountBackupDetail::password>("password"),
    Column<&tblAccountBackupDetail::backups_allowed>("backups_allowed"),
};

}  // namespace

const wexpol::Table& CAccountBackupDetail::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("account_backup_details", "account_backup_detail", kColumns);
  return table;
}

bool CAccountBackupDetail::IsOnlineBackupAllowed(sqlite3* db) {
  return wexpol::AskLocalDevice(db, false, [&](long device_id) {
    wexpol::Statement select(
        db,
        "SELECT account_status_id, backups_allowed, enabled FROM device_services"
        " INNER JOIN devices ON device_services.device_id=devices.id"
        " INNER JOIN accounts ON accounts.id=devices.account_id"
        " INNER JOIN account_backup_details ON account_backup_details.account_id=accounts.id"
        " WHERE service_id=? AND devices.id=?",
        wexpol::kOnlineBackupService, device_id);
    if (!select.StepRow()) return false;
    const bool allowed = select.Int(1) != 0;
    // A service that does not say whether it is on follows the account.
    const bool enabled = select.IsNull(2) ? allowed : select.Int(2) != 0;
    return select.Int(0) == ACCOUNT_STATUS_ACTIVE && allowed && enabled;
  });
}

PASSWORD_VALIDATION_RESULT CAccountBackupDetail::IsValidPassword(const wchar_t* given) const {
  if (!password) return PASSWORD_NO_POLICY;
  const bool same = given && wexpol::IsSameText(password.view(), given);
  return same ? PASSWORD_VALID : PASSWORD_INVALID;
}
