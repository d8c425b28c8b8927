// The account's access to online backup: table "account_backup_details".

#ifndef WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
#define WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_

#include <cstdint>

#include "wexpol/identity/policy.h"
#include "wexpol/records/record.h"

struct tblAccountBackupDetail {
  std::int32_t account_id = -1;
  wexpol::Text sos_id;  // The account at the backup provider.
  wexpol::WideText password;
  bool backups_allowed = false;
};

class WEXPOL_API CAccountBackupDetail
    : public wexpol::Record<CAccountBackupDetail, tblAccountBackupDetail> {
 public:
  static const wexpol::Table& Table();

  // Whether account, backup details and backup service of the local device all allow online backup.
  static bool IsOnlineBackupAllowed(sqlite3* db);

  // PASSWORD_NO_POLICY when no password is stored.
  PASSWORD_VALIDATION_RESULT IsValidPassword(const wchar_t* given) const;
};

#endif  // WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
