// The facade's operations over online backup.

#include "wexpol/devicecare/account_backup_detail.h"
#include "wexpol/devicecare/device_backup_detail.h"
#include "wexpol/devicecare/device_backup_statistics.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/policydb/facade.h"

namespace {

constexpr std::int32_t kActiveAccount = 1;

bool IsBackupAllowed(sqlite3* db) {
  const wexpol::ReadScope scope(db);
  long device_id;
  if (!wexpol::GetLocalDeviceId(db, device_id) || device_id < 1) return false;
  wexpol::Statement select(
      db,
      "SELECT account_status_id, backups_allowed, enabled FROM device_services"
      " INNER JOIN devices ON device_services.device_id=devices.id"
      " INNER JOIN accounts ON accounts.id=devices.account_id"
      " INNER JOIN account_backup_details ON account_backup_details.account_id=accounts.id"
      " WHERE service_id=4 AND devices.id=?",
      device_id);
  if (!select.Row()) return false;
  const bool allowed = select.Int(1) != 0;
  // A service that does not say whether it is on follows the account.
  const bool enabled = select.IsNull(2) ? allowed : select.Int(2) != 0;
  return select.Int(0) == kActiveAccount && allowed && enabled;
}

}  // namespace

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
  if (!record) return false;
  return wexpol::Ask([&] {
    static const std::string& by_device =
        *new std::string(CDeviceBackupDetail::Table().select_sql() + " WHERE device_id=?");
    const wexpol::ReadScope scope(handle());
    return ReadByKey(*record, id) ||
           wexpol::ReadRecord(*record, m_error, handle(), wexpol::Sql::Permanent(by_device), id);
  });
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
  return wexpol::Ask([&] { return IsBackupAllowed(handle()); });
}
