// The account's access to online backup: table "account_backup_details".

#ifndef DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
#define DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_

#include <cstdint>

#include "identity/policy.h"
#include "records/record.h"

struct tblAccountBackupDetail {
  std::int32_t account_id = -1;
  records::Text sos_id;  // The account at the backup provider.
  records::WideText password;
  bool backups_allowed = false;
};

class WEXPOL_API CAccountBackupDetail
    : public records::Record<CAccountBackupDetail, tblAccountBackupDetail> {
 public:
  static const records::Table& Table();

  // PASSWORD_NO_POLICY when no password is stored.
  PASSWORD_VALIDATION_RESULT IsValidPassword(const wchar_t* given) const;
};

#endif  // DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
