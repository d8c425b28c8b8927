#include "devicecare/account_backup_detail.h"

#include "identity/password.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAccountBackupDetail::account_id>("account_id", records::kKey | records::kRequired),
    Column<&tblAccountBackupDetail::sos_id>("sos_id"),
    Column<&tblAccountBackupDetail::password>("password"),
    Column<&tblAccountBackupDetail::backups_allowed>("backups_allowed"),
};

}  // namespace

const records::Table& CAccountBackupDetail::Table() {
  static const records::Table& table =
      *new records::Table("account_backup_details", "account_backup_detail", kColumns);
  return table;
}

PASSWORD_VALIDATION_RESULT CAccountBackupDetail::IsValidPassword(const wchar_t* given) const {
  if (!password) return PASSWORD_NO_POLICY;
  const bool same = given && identity::IsSameText(password.view(), given);
  return same ? PASSWORD_VALID : PASSWORD_INVALID;
}
