#include "wexpol/devicecare/device_backup_statistics.h"

#include <algorithm>
#include <limits>

#include "wexpol/platform/clock.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kNotReported;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblDeviceBackupStatistics::backup_status_id>("backup_status_id"),
    Column<&tblDeviceBackupStatistics::backup_status_date>("backup_status_date"),
    Column<&tblDeviceBackupStatistics::backup_success_date>("backup_success_date", kNotReported),
    Column<&tblDeviceBackupStatistics::backup_duration>("backup_duration"),
    Column<&tblDeviceBackupStatistics::backup_file_count>("backup_file_count"),
    Column<&tblDeviceBackupStatistics::file_count_total>("file_count_total"),
    Column<&tblDeviceBackupStatistics::backup_size>("backup_size"),
    Column<&tblDeviceBackupStatistics::error_file_count>("error_file_count"),
    Column<&tblDeviceBackupStatistics::error_file_size>("error_file_size", kNotReported),
    Column<&tblDeviceBackupStatistics::next_scheduled_date>("next_scheduled_date"),
    Column<&tblDeviceBackupStatistics::current_usage>("current_usage"),
};

constexpr std::int32_t kSucceeded = 1;
constexpr std::int32_t kFailed = 2;
constexpr std::int32_t kStoppedByUser = 3;
constexpr std::int64_t kBytesPerKilobyte = 1024;
constexpr std::int64_t kNeverInSeconds = 7201;  // just over two hours

// The client's result codes as the console numbers them. The numbers without a name, 4 to 6, mean
// something to the console only.
std::int32_t StatusOf(const COnlineBackupSession& session) {
  switch (session.result_code) {
    case 0:
      return session.stopped_by_user ? kStoppedByUser : 5;
    case 1:
      return kSucceeded;
    case 2:
      return 4;
    case 3:
      return 6;
    default:
      return kFailed;
  }
}

// -1 when one of the dates is not known, or they are in the wrong order.
std::int32_t DurationOf(const COnlineBackupSession& session) {
  if (session.start_date < 0 || session.end_date < session.start_date) return -1;
  return static_cast<std::int32_t>(std::min<std::int64_t>(
      session.end_date - session.start_date, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

const wexpol::Table& CDeviceBackupStatistics::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("device_backup_statistics", "device_backup_statistic", kColumns);
  return table;
}

CDeviceBackupStatistics::CDeviceBackupStatistics(const COnlineBackupSession& session) {
  backup_status_id = StatusOf(session);
  backup_status_date = session.end_date;
  if (backup_status_id == kSucceeded) backup_success_date = session.end_date;
  backup_duration = DurationOf(session);
  backup_file_count = session.backup_file_count;
  file_count_total = session.file_count_total;
  if (session.backup_bytes >= 0) backup_size = session.backup_bytes / kBytesPerKilobyte;
  error_file_count = session.error_file_count;
  error_file_size = session.error_file_bytes;
  next_scheduled_date = session.next_scheduled_date;
}

std::int64_t CDeviceBackupStatistics::GetCurrentUsage(sqlite3* db) {
  return wexpol::QueryInt64(db, "SELECT current_usage FROM device_backup_statistics").value_or(-1);
}

std::int64_t CDeviceBackupStatistics::HowLongAgoLastSuccessfulBackupRan() const {
  if (backup_success_date == -1) return kNeverInSeconds;
  // Modulo 64 bits: the date is the console's.
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(wexpol::NowUtc()) -
                                   static_cast<std::uint64_t>(backup_success_date));
}
