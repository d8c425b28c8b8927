// What the last scan found: table "last_scan_summaries".

#ifndef WEXPOL_ANTIVIRUS_LAST_SCAN_SUMMARY_H_
#define WEXPOL_ANTIVIRUS_LAST_SCAN_SUMMARY_H_

#include <cstdint>

#include "wexpol/platform/clock.h"
#include "wexpol/records/record.h"

struct tblLastScanSummary {
  std::int32_t id = -1;
  std::int32_t device_id = -1;
  std::int64_t end_time = wexpol::NowUtc();  // Seconds since 1970 UTC.
  std::int32_t threats_found = 0;
};

// The result of the last scan on this device, reported to the console.
//
// The console does not know the id of the row. It sends "end_time" as a text and is told it as a
// number.
class WEXPOL_API CLastScanSummary : public wexpol::Record<CLastScanSummary, tblLastScanSummary> {
 public:
  static const wexpol::Table& Table();

  // An "end_time" that is a text but no date becomes -1.
  bool ParseJson(const rapidjson::Value& value);

  // Puts the record in the place of the one that is stored. False when it cannot be written;
  // outside a transaction the old one then stays.
  bool ReplaceInDB(sqlite3* db) const;

  // The seconds since 1970 of the UTC time "2020-01-02T03:04:05", for which leading zeros may be
  // missing and more may follow; -1 for any other text and for a date that does not exist.
  static std::int64_t ConvertDateTimeStringToEpoch(const char* text);
};

#endif  // WEXPOL_ANTIVIRUS_LAST_SCAN_SUMMARY_H_
