#include "wexpol/devicecare/account_backup_detail.h"

#include "wexpol/identity/password.h"
#include "wexpol/records/table.h"

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

PASSWORD_VALIDATION_RESULT CAccountBackupDetail::IsValidPassword(const wchar_t* given) const {
  if (!password) return PASSWORD_NO_POLICY;
  const bool same = given && wexpol::IsSameText(password.view(), given);
  return same ? PASSWORD_VALID : PASSWORD_INVALID;
}
