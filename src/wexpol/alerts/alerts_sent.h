// Which kinds of alert were already sent: table "alerts_sent".

#ifndef WEXPOL_ALERTS_ALERTS_SENT_H_
#define WEXPOL_ALERTS_ALERTS_SENT_H_

#include <cstdint>

#include "wexpol/platform/clock.h"
#include "wexpol/records/record.h"

struct tblAlertsSent {
  std::int32_t id = -1;  // Assigned by the database.
  std::int16_t event_type_id = -1;
  std::int64_t event_time = wexpol::NowUtc();  // Seconds since 1970 UTC.
};

// A note of the host's that a kind of alert was sent. No rule here adds or removes one.
class WEXPOL_API CAlertsSent : public wexpol::Record<CAlertsSent, tblAlertsSent> {
 public:
  CAlertsSent() = default;
  explicit CAlertsSent(short kind);

  static const wexpol::Table& Table();

  // Whether a kind of alert was sent: ever, or earlier than `time` in seconds since 1970 UTC.
  // WasSent throws the SQLite code, an int, when the kind cannot be bound.
  static bool WasSent(sqlite3* db, short kind);
  static bool WasSentBefore(sqlite3* db, short kind, std::int64_t time);

  // The SQLite step result. A type below 1 stands for all.
  static int DeleteByType(sqlite3* db, short kind);
};

#endif  // WEXPOL_ALERTS_ALERTS_SENT_H_
