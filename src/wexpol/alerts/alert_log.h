// The alerts that wait to be reported to the console: table "alert_logs".

#ifndef WEXPOL_ALERTS_ALERT_LOG_H_
#define WEXPOL_ALERTS_ALERT_LOG_H_

#include <cstdint>
#include <list>
#include <string>

#include "wexpol/records/record.h"

class CAlertEventType;

struct tblAlertLog {
  std::int32_t id = -1;  // Assigned by the database.
  std::int32_t alert_event_type_id = -1;
  std::int32_t alert_id = -1;
  wexpol::Text details;
  std::int16_t event_type_id = -1;
  wexpol::Text alert_name;
  std::int64_t event_start = -1;  // Seconds since 1970 UTC.
  std::int64_t event_end = -1;
};

// An alert: the occurrences of one event type that were enough, from the first to the last. A type
// has one pending log at most unless the host adds more.
class WEXPOL_API CAlertLog : public wexpol::Record<CAlertLog, tblAlertLog> {
 public:
  CAlertLog() = default;
  // Null for `text`, the details, stands for those of the type; a start of -1 is now, an end of -1
  // is the start.
  CAlertLog(const CAlertEventType* type, const char* text, std::int64_t start, std::int64_t end);

  static const wexpol::Table& Table();

  // Appends what the console is told: without the ids of the row and of its event type, with the
  // device's, and with the times as local time "2024-03-13T12:00:00". A time that is none is left
  // out.
  void GenerateJson(std::string& out, long device_id) const;

  // Starts the timer of its event type anew and inserts the log, in this order: the timer runs also
  // when the insert then fails. False when either fails; without the timer nothing is inserted.
  bool AddWithTimer(sqlite3* db) const;
  // Appends the logs of a type in the order of their ids; the records are the caller's. Where there
  // is none the timer of the type is started anew. False, with the error object in `error`, when
  // either fails.
  static bool List(sqlite3* db, std::list<CAlertLog*>& out, long type_id, std::string& error);

  // Inserts the log in place of all logs of its event type.
  bool ReplaceInDB(sqlite3* db) const;

  // The SQLite step result. A type below 1 stands for all.
  static int DeleteByType(sqlite3* db, long type_id);

  // From the first start to the last end of a type's logs; left alone when it has none, which is
  // also true.
  static bool GetStartAndEndTimes(sqlite3* db, std::int64_t& start, std::int64_t& end,
                                  long type_id);
};

#endif  // WEXPOL_ALERTS_ALERT_LOG_H_
