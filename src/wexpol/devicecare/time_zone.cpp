#include "wexpol/devicecare/time_zone.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblTimeZone::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblTimeZone::name>("name"),
    Column<&tblTimeZone::windows_data>("windows_data"),
    Column<&tblTimeZone::row_version>("row_version"),
};

constexpr std::size_t kRecordSize = sizeof(REG_TZI_FORMAT);
constexpr std::size_t kStride = 3;  // two digits and a separator
constexpr std::size_t kLeastLength = kRecordSize * kStride - 1;

}  // namespace

bool wexpol::DecodeTimeZoneRecord(void* record, const char* text) {
  if (!record || !text || ::strnlen(text, kLeastLength) < kLeastLength) return false;
  std::uint8_t bytes[kRecordSize];
  for (std::size_t i = 0; i < kRecordSize; ++i) {
    const char digits[] = {text[kStride * i], text[kStride * i + 1], '\0'};
    // A wrong digit is no failure: the number ends before it.
    bytes[i] = static_cast<std::uint8_t>(std::strtol(digits, nullptr, 16));
  }
  std::memcpy(record, bytes, sizeof bytes);
  return true;
}

const wexpol::Table& CTimeZone::Table() {
  static const wexpol::Table& table = *new wexpol::Table("time_zones", "time_zone", kColumns);
  return table;
}

bool CTimeZone::GetRecord(sqlite3* db, short zone_id) {
  return wexpol::QueryRecord(*this, db, Table().select_by_key(), zone_id);
}

bool CTimeZone::GetTimeZoneInformation(TIME_ZONE_INFORMATION* out, sqlite3* db, short zone_id) {
  REG_TZI_FORMAT zone;
  if (!out || !GetRecord(db, zone_id) ||
      !ConvertCommaSeparatedWindowsDataToTZI(&zone, windows_data)) {
    return false;
  }
  *out = {};
  out->Bias = zone.Bias;
  out->StandardBias = zone.StandardBias;
  out->DaylightBias = zone.DaylightBias;
  out->StandardDate = zone.StandardDate;
  out->DaylightDate = zone.DaylightDate;
  return true;
}
