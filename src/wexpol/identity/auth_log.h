// The last attempt to authenticate each thing that has a password: table "auth_logs".

#ifndef WEXPOL_IDENTITY_AUTH_LOG_H_
#define WEXPOL_IDENTITY_AUTH_LOG_H_

#include <cstdint>
#include <string>

#include "wexpol/platform/system_types.h"
#include "wexpol/records/record.h"

struct tblAuthLog {
  std::int32_t id = -1;    // Given by the database.
  SYSTEMTIME date_time{};  // Local time; all zeros is none. Stored to the second.
  bool success = false;
  std::int64_t table_id = -1;  // Key of what was authenticated.
};

// How the last attempt at one password ended, and how long the next has to wait.
class WEXPOL_API CAuthLog : public wexpol::Record<CAuthLog, tblAuthLog> {
 public:
  static const wexpol::Table& Table();

  // Takes the row of that table id. False when there is none or, with the error object in `error`,
  // when it cannot be read.
  bool GetRecord(sqlite3* db, std::uint64_t table, std::string& error);

  // Writes the row of that table id, whether it is there or not. A null time is now; one that does
  // not exist is refused.
  bool UpdateAuthLog(sqlite3* db, bool succeeded, std::uint64_t table, const SYSTEMTIME* time);

  // Seconds to wait before the next attempt: 5 after one that failed, else what is left of `period`
  // seconds since it, 0 when that is over or the attempt lies ahead. A null `now` is now.
  long GetSecondsRemaining(long period, const SYSTEMTIME* now);
  // The same of the row of that table id; 0 when there is none.
  long GetSecondsRemaining(long period, std::uint64_t table, sqlite3* db);
};

#endif  // WEXPOL_IDENTITY_AUTH_LOG_H_
