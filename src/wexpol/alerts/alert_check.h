// The check timer of each event type: table "alert_checks".

#ifndef WEXPOL_ALERTS_ALERT_CHECK_H_
#define WEXPOL_ALERTS_ALERT_CHECK_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblAlertCheck {
  std::int32_t alert_event_type_id = -1;  // The key.
  std::int64_t date_time = -1;  // When the timer was last started: seconds since 1970 UTC.
  bool alert_sent = false;      // Whether the alert of the last period was sent.
};

// The timer that spaces the alerts of one event type. It is started when an alert is sent or turns
// out to have nothing to send; once its period is over the next check is due.
//
// Insertion replaces the timer of the type.
class WEXPOL_API CAlertCheck : public wexpol::Record<CAlertCheck, tblAlertCheck> {
 public:
  static const wexpol::Table& Table();

  // Takes the timer of a type; false when it has none.
  bool GetRecord(sqlite3* db, long type_id);
  // When the timer of a type was started; -1 when it has none.
  static std::int64_t GetTime(sqlite3* db, long type_id);

  // Starts the timer of a type anew. False when that cannot be written.
  static bool UpdateAlertCheck(sqlite3* db, long type_id, bool sent);
  // Starts the timer of a type that has none, and leaves one that runs. False when that cannot be
  // written.
  static bool StartTimer(sqlite3* db, long type_id);

  // Seconds until the timer has run for `period` seconds, 0 when it has; starts it where there is
  // none.
  static long GetSecondsRemaining(sqlite3* db, long type_id, std::uint64_t period);
  // The same of the timer that was read.
  long SecondsRemaining(std::uint64_t period) const;

  // Whether the type has no timer, or one whose alert was not sent.
  static bool DidPreviousAlertFail(sqlite3* db, long type_id);

  // Whether the alert was sent less than `duration` seconds ago.
  bool Suppresses(std::int64_t duration) const;

 private:
  std::uint64_t Elapsed() const;
};

#endif  // WEXPOL_ALERTS_ALERT_CHECK_H_
