// The devices' credentials for online backup: table "device_backup_details".

#ifndef WEXPOL_DEVICECARE_DEVICE_BACKUP_DETAIL_H_
#define WEXPOL_DEVICECARE_DEVICE_BACKUP_DETAIL_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblDeviceBackupDetail {
  std::int32_t id = -1;
  std::int32_t device_id = -1;  // Row of "devices".
  wexpol::Text name;
  wexpol::WideText login;
  wexpol::WideText password;
  wexpol::Text shadow_protect_license_key;  // The keys are the backup client's own data.
  wexpol::Text egr_license_key;
};

// With which account a device logs in at the provider of online backup, and the command lines with
// which its client is started.
class WEXPOL_API CDeviceBackupDetail
    : public wexpol::Record<CDeviceBackupDetail, tblDeviceBackupDetail> {
 public:
  static const wexpol::Table& Table();

  // Takes the row of that id; where there is none, that of the device of that id. False when there
  // is neither or, with the error object in `error`, when they cannot be read.
  bool GetRecord(sqlite3* db, long wanted, std::string& error);

  // Whether the record is a row of the console (its id is above 0) with the login that every use
  // of the backup client takes.
  bool IsValid() const;

  // Command lines of the backup client. False, and `out` untouched, without the login or, except
  // for a backup, the password.
  bool BuildInstallCmdLineParameters(std::wstring& out) const;
  bool BuildBackUpNowCmdLineParameters(std::wstring& out) const;
  bool BuildUICmdLineParameters(std::wstring& out) const;
};

#endif  // WEXPOL_DEVICECARE_DEVICE_BACKUP_DETAIL_H_
