// The occurrences of events that have not become an alert yet: table "alert_logs_buffer".

#ifndef WEXPOL_ALERTS_ALERT_LOG_BUFFER_H_
#define WEXPOL_ALERTS_ALERT_LOG_BUFFER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "wexpol/platform/clock.h"
#include "wexpol/records/record.h"

class CAlertEventType;

struct tblAlertLogBuffer {
  std::int32_t id = -1;  // Assigned by the database.
  std::int32_t alert_event_type_id = -1;
  std::int64_t event_time = wexpol::NowUtc();  // Seconds since 1970 UTC.
  wexpol::Text details;
};

// One occurrence of an event. It leaves the buffer when its type's time window is over, or with the
// others when they become an alert.
class WEXPOL_API CAlertLogBuffer : public wexpol::Record<CAlertLogBuffer, tblAlertLogBuffer> {
 public:
  CAlertLogBuffer() = default;
  // An occurrence that happens now, with its details.
  CAlertLogBuffer(long type_id, const char* text);

  static const wexpol::Table& Table();

  // Records an occurrence of `type`, with its details when `details` is null. 1: an alert log was
  // made of the occurrences, to be sent now. 0: nothing is to be sent. -1: a read or a write
  // failed. Throws the SQLite code, an int, when the occurrences that left the time window cannot
  // be removed.
  //
  // Replacing the pending log and emptying the buffer stand or fall as one, also in a transaction
  // of the caller. When they fail, the occurrence stays buffered and the log stays pending.
  static long AddAlertLogBuffer(sqlite3* db, const CAlertEventType* type, const char* details);
  // The same for every enabled type of a kind of event; appends the ids of those that answer 1.
  // False when the types cannot be read or one of them answers -1; the others are recorded all the
  // same.
  static bool AddAlertLogBuffer(std::vector<long>& to_send, sqlite3* db, short kind,
                                const char* details);

  // How many occurrences of a type are buffered, at most 32767; 0 on failure.
  static short GetCount(sqlite3* db, long type_id);
  // The first and the last time of a type's occurrences, and the details of one of them. What there
  // is none of is left alone; true all the same.
  static bool GetCondensedInfo(sqlite3* db, std::int64_t& first, std::int64_t& last,
                               std::string& details, long type_id);
  // The SQLite step result. A type below 1 stands for all.
  static int DeleteByType(sqlite3* db, long type_id);
};

#endif  // WEXPOL_ALERTS_ALERT_LOG_BUFFER_H_
