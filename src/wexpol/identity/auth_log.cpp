#include "wexpol/identity/auth_log.h"

#include "wexpol/platform/clock.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

// The date and time as the decimal number YYYYMMDDHHMMSS; 0 is none.
struct DateTimeCoding {
  using Field = SYSTEMTIME;

  static std::int64_t Pack(const SYSTEMTIME& time) {
    std::int64_t packed = 0;
    for (const std::uint16_t part :
         {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond}) {
      packed = packed * 100 + part;
    }
    return packed;
  }

  // False for a number that is no date and time.
  static bool Unpack(std::int64_t packed, SYSTEMTIME& time) {
    if (packed < 0 || packed / 10'000'000'000 > UINT16_MAX) return false;
    const auto part = [packed](std::int64_t unit, std::int64_t count) {
      return static_cast<std::uint16_t>(packed / unit % count);
    };
    SYSTEMTIME parts{};
    parts.wYear = part(10'000'000'000, UINT16_MAX + 1);
    parts.wMonth = part(100'000'000, 100);
    parts.wDay = part(1'000'000, 100);
    parts.wHour = part(10'000, 100);
    parts.wMinute = part(100, 100);
    parts.wSecond = part(1, 100);
    std::int64_t file_time;
    if (!wexpol::ToFileTime(parts, &file_time)) return false;
    time = wexpol::FromFileTime(file_time);  // With the day of the week.
    return true;
  }

  static bool Parse(const rapidjson::Value& value, SYSTEMTIME& field) {
    return value.IsInt64() && Unpack(value.GetInt64(), field);
  }
  static bool IsNull(const SYSTEMTIME& field) { return Pack(field) == 0; }
  static void Write(const SYSTEMTIME& field, std::string& out) {
    out += std::to_string(Pack(field));
  }
  static void Bind(const SYSTEMTIME& field, wexpol::Target& target) {
    if (IsNull(field)) return target.Null();
    target.Int64(Pack(field));
  }
  static void Copy(sqlite3_stmt* row, int column, SYSTEMTIME& field) {
    Unpack(sqlite3_column_int64(row, column), field);
  }
};

constexpr auto kDateTime = wexpol::MakeCodec<DateTimeCoding>();

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAuthLog::id>("id", wexpol::kKey | wexpol::kAssignedByDb),
    Column<&tblAuthLog::date_time>("date_time", kDateTime),
    Column<&tblAuthLog::success>("success"),
    Column<&tblAuthLog::table_id>("table_id"),
};

constexpr long kSecondsAfterFailure = 5;

// Seconds of a calendar time; one that does not exist counts as the clock's first.
std::int64_t Seconds(const SYSTEMTIME& time) {
  std::int64_t file_time = 0;
  wexpol::ToFileTime(time, &file_time);
  return wexpol::FileTimeToUnix(file_time);
}

}  // namespace

const wexpol::Table& CAuthLog::Table() {
  static const wexpol::Table& table = *new wexpol::Table("auth_logs", "auth_log", kColumns);
  return table;
}

bool CAuthLog::GetRecord(sqlite3* db, std::uint64_t table, std::string& error) {
  return wexpol::ReadRecord(*this, error, db, "SELECT * FROM auth_logs WHERE table_id=?", table);
}

bool CAuthLog::UpdateAuthLog(sqlite3* db, bool succeeded, std::uint64_t table,
                             const SYSTEMTIME* time) {
  const SYSTEMTIME at = time ? *time : wexpol::NowLocal();
  std::int64_t file_time;
  if (!wexpol::ToFileTime(at, &file_time)) return false;
  std::string error;
  const bool found = GetRecord(db, table, error);
  if (!error.empty()) return false;
  date_time = at;
  success = succeeded;
  table_id = static_cast<std::int64_t>(table);
  return (found ? UpdateDB(db) : Add2DB(db)) == SQLITE_DONE;
}

long CAuthLog::GetSecondsRemaining(long period, const SYSTEMTIME* now) {
  if (!success) return kSecondsAfterFailure;
  const std::int64_t elapsed = Seconds(now ? *now : wexpol::NowLocal()) - Seconds(date_time);
  return elapsed < 0 || elapsed > period ? 0 : static_cast<long>(period - elapsed);
}

long CAuthLog::GetSecondsRemaining(long period, std::uint64_t table, sqlite3* db) {
  std::string error;
  return GetRecord(db, table, error) ? GetSecondsRemaining(period, nullptr) : 0;
}
