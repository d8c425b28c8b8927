// Which local events raise an alert, and how: table "alert_event_types".

#ifndef WEXPOL_ALERTS_ALERT_EVENT_TYPE_H_
#define WEXPOL_ALERTS_ALERT_EVENT_TYPE_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblAlertEventType {
  std::int32_t id = -1;        // Also the key of the check timer and of buffered occurrences.
  std::int32_t alert_id = -1;  // The console's alert definition.
  std::int16_t event_type_id = 0;
  wexpol::Text name;
  bool enabled = false;
  std::int32_t suppression_duration = 0;  // Minutes.
  std::int32_t threshold = 0;             // In the unit that follows.
  std::int16_t threshold_unit_id = 1;     // 1 occurrences, 2 KB, 3 MB, 4 GB, 5 percent.
  std::int32_t time_window = 0;           // Minutes.
  wexpol::Text details;                   // Of an alert that brings none of its own.
  bool auto_acknowledge_enabled = false;
};

// The rule by which occurrences of one kind of event become an alert.
class WEXPOL_API CAlertEventType : public wexpol::Record<CAlertEventType, tblAlertEventType> {
 public:
  static const wexpol::Table& Table();
  // The same with only those columns that say when the type is to be checked.
  static const wexpol::Table& TimingTable();

  // Takes the type of that id, if it is enabled.
  bool GetRecord(sqlite3* db, long type_id);
  // Takes the first enabled type of a kind of event.
  bool LoadFromDb(sqlite3* db, short kind);
  // Whether a type of that kind of event, enabled or not, has its alerts acknowledged by itself.
  static bool IsAutoAcknowledgeEnabled(sqlite3* db, short kind);

  // Whether the kind of event is one of the three of Windows services.
  bool IsWindowsServiceEvent() const;

  // False for a rule that suppresses no longer than its window.
  bool IsValidRule() const;

  // Whether a measured `value` has fallen below the size limit, or its share of `total` is at most
  // the percentage. False for occurrences, and for a share of nothing.
  bool IsLimitReached(const std::int64_t& value, const std::int64_t& total) const;
};

#endif  // WEXPOL_ALERTS_ALERT_EVENT_TYPE_H_
