// How the backups of this device went: table "device_backup_statistics", one row.

#ifndef WEXPOL_DEVICECARE_DEVICE_BACKUP_STATISTICS_H_
#define WEXPOL_DEVICECARE_DEVICE_BACKUP_STATISTICS_H_

#include <cstdint>

#include "wexpol/records/record.h"

// What the backup client says of its last session. Dates are seconds since 1970 UTC; -1 is unknown
// everywhere.
class WEXPOL_API COnlineBackupSession {
 public:
  std::int32_t result_code = 0;
  bool stopped_by_user = false;  // Counts with result code 0 only.
  std::int64_t start_date = -1;
  std::int64_t end_date = -1;
  std::int64_t next_scheduled_date = -1;
  std::int32_t backup_file_count = -1;
  std::int32_t file_count_total = -1;
  std::int32_t error_file_count = -1;
  std::int64_t backup_bytes = -1;
  std::int64_t error_file_bytes = -1;
};

struct tblDeviceBackupStatistics {
  std::int32_t backup_status_id = -1;     // How the last session ended, as the console numbers it.
  std::int64_t backup_status_date = -1;   // Seconds since 1970 UTC, as are the other dates.
  std::int64_t backup_success_date = -1;  // Not reported to the console.
  std::int32_t backup_duration = -1;      // Seconds.
  std::int32_t backup_file_count = -1;
  std::int32_t file_count_total = -1;
  std::int64_t backup_size = -1;  // Kilobytes.
  std::int32_t error_file_count = -1;
  std::int64_t error_file_size = -1;  // Bytes; not reported to the console.
  std::int64_t next_scheduled_date = -1;
  std::int64_t current_usage = -1;
};

// The report of the last backup session of this device.
//
// The table has no key: DelFromDB empties it and UpdateDB writes every row.
class WEXPOL_API CDeviceBackupStatistics
    : public wexpol::Record<CDeviceBackupStatistics, tblDeviceBackupStatistics> {
 public:
  static const wexpol::Table& Table();

  CDeviceBackupStatistics() = default;
  // The report of a session. Leaves `current_usage` unset, which no session tells.
  explicit CDeviceBackupStatistics(const COnlineBackupSession& session);

  // The stored usage, -1 when there is none.
  static std::int64_t GetCurrentUsage(sqlite3* db);

  // Seconds since the last successful backup; 7201 when there has been none.
  std::int64_t HowLongAgoLastSuccessfulBackupRan() const;
};

#endif  // WEXPOL_DEVICECARE_DEVICE_BACKUP_STATISTICS_H_
