// The devices' credentials for online backup: table "device_backup_details".

#ifndef DEVICECARE_DEVICE_BACKUP_DETAIL_H_
#define DEVICECARE_DEVICE_BACKUP_DETAIL_H_

#include <cstdint>
#include <string>

#include "records/record.h"

struct tblDeviceBackupDetail {
  std::int32_t id = -1;
  std::int32_t device_id = -1;
  records::Text name;
  records::WideText login;
  records::WideText password;
  records::Text shadow_protect_license_key;  // The keys are the backup client's own data.
  records::Text egr_license_key;
};

class WEXPOL_API CDeviceBackupDetail
    : public records::Record<CDeviceBackupDetail, tblDeviceBackupDetail> {
 public:
  static const records::Table& Table();

  // Whether the record is a row of the console (its id is above 0) with the login that every use
  // of the backup client takes.
  bool IsValid() const;

  // Command lines of the backup client. False, and `out` untouched, without the login or, except
  // for a backup, the password.
  bool BuildInstallCmdLineParameters(std::wstring& out) const;
  bool BuildBackUpNowCmdLineParameters(std::wstring& out) const;
  bool BuildUICmdLineParameters(std::wstring& out) const;
};

#endif  // DEVICECARE_DEVICE_BACKUP_DETAIL_H_
