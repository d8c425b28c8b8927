// The facade's operations over online backup.

#include "wexpol/devicecare/account_backup_detail.h"
#include "wexpol/devicecare/device_backup_detail.h"
#include "wexpol/devicecare/device_backup_statistics.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::AskAndTell;

bool CPolicyDB::ClearAndAddAccountBackupDetails(const char* json) {
  return ClearAndAdd<CAccountBackupDetail>(json);
}
bool CPolicyDB::GetAccountBackupDetails(CAccountBackupDetail* record) {
  return record && ReadFirst(*record);
}

bool CPolicyDB::ClearAndAddDeviceBackupDetails(const char* json) {
  return ClearAndAdd<CDeviceBackupDetail>(json);
}
bool CPolicyDB::GetDeviceBackupDetails(CDeviceBackupDetail* record, long id) {
  return record && AskAndTell(m_error, [&] { return record->GetRecord(handle(), id, m_error); });
}
bool CPolicyDB::GetDeviceBackupDetails(std::list<CDeviceBackupDetail*>& out, const char* column,
                                       long value) {
  return List(out, column, value);
}

bool CPolicyDB::ClearAndAddDeviceBackupStatistics(const char* json) {
  return ClearAndAdd<CDeviceBackupStatistics>(json);
}
bool CPolicyDB::GetDeviceBackupStatistics(CDeviceBackupStatistics* record) {
  return record && ReadFirst(*record);
}

bool CPolicyDB::IsOnlineBackupAllowed(const wchar_t*) {
  return Ask([&] { return CAccountBackupDetail::IsOnlineBackupAllowed(handle()); });
}
