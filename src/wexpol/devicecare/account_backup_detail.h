// The account's access to online backup: table "account_backup_details".

#ifndef WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
#define WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_

#include <cstdint>

#include "wexpol/identity/policy.h"
#include "wexpol/records/record.h"

struct tblAccountBackupDetail {
  std::int32_t account_id = -1;
  wexpol::Text sos_id;           // The account at the backup provider.
  wexpol::WideText password;     // As it is, not as a digest.
  bool backups_allowed = false;  // For the whole account.
};

// What the account has with the provider of online backup: whether its devices may back up, and the
// password that protects the client.
class WEXPOL_API CAccountBackupDetail
    : public wexpol::Record<CAccountBackupDetail, tblAccountBackupDetail> {
 public:
  static const wexpol::Table& Table();

  // Whether account, backup details and backup service of the local device all allow online backup.
  static bool IsOnlineBackupAllowed(sqlite3* db);

  // Whether a password is the stored one, letter for letter. PASSWORD_NO_POLICY, which is not to be
  // taken for valid, when none is stored.
  PASSWORD_VALIDATION_RESULT IsValidPassword(const wchar_t* given) const;
};

#endif  // WEXPOL_DEVICECARE_ACCOUNT_BACKUP_DETAIL_H_
