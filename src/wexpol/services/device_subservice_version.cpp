#include "wexpol/services/device_subservice_version.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>
#include <type_traits>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/records/json_text.h"
#include "wexpol/records/row.h"
#include "wexpol/records/synchronise.h"
#include "wexpol/services/installed_backup.h"

namespace {

using wexpol::Column;
using Row = tblDeviceSubserviceVersion;

constexpr std::int8_t SIMPLE_DATETIME::*kPartsOfDate[] = {
    &SIMPLE_DATETIME::month, &SIMPLE_DATETIME::day, &SIMPLE_DATETIME::hour,
    &SIMPLE_DATETIME::minute, &SIMPLE_DATETIME::second};

// The number of the digits that the text begins with, which are taken off it; nothing when there
// are none. A number that does not fit is the largest.
std::optional<std::uint32_t> TakeNumber(std::string_view& text) {
  std::uint32_t number = UINT32_MAX;
  const char* end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  if (end == text.data()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

std::optional<std::uint32_t> FindNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  return TakeNumber(text);
}

// Up to six numbers, with anything between them. What is missing or does not fit stays unknown.
SIMPLE_DATETIME ParseDate(std::string_view text) {
  SIMPLE_DATETIME date;
  const auto year = FindNumber(text);
  if (year && *year < UINT16_MAX) date.year = static_cast<std::uint16_t>(*year);
  for (const auto part : kPartsOfDate) {
    const auto number = FindNumber(text);
    if (number && *number <= INT8_MAX) date.*part = static_cast<std::int8_t>(*number);
  }
  return date;
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// Ends before the first part that is not known.
std::string DateText(const SIMPLE_DATETIME& date) {
  std::string text = Padded(date.year, 4);
  const char* separator = "--T::";
  for (const auto part : kPartsOfDate) {
    if (date.*part < 0) break;
    text += *separator++;
    text += Padded(date.*part, 2);
  }
  return text;
}

struct DateCoding {
  using Field = SIMPLE_DATETIME;

  static bool Parse(const rapidjson::Value& value, SIMPLE_DATETIME& field) {
    if (!value.IsString() || value.GetStringLength() == 0) return false;
    field = ParseDate(wexpol::JsonText(value));
    return true;
  }
  static bool IsNull(const SIMPLE_DATETIME& field) { return field.year == UINT16_MAX; }
  static void Write(const SIMPLE_DATETIME& field, std::string& out) {
    out.append("\"").append(DateText(field)).append("\"");
  }
  static void Bind(const SIMPLE_DATETIME& field, wexpol::Target& target) {
    if (IsNull(field)) return target.Null();
    target.CopyOf(std::string_view(DateText(field)));
  }
  static void Copy(sqlite3_stmt* row, int column, SIMPLE_DATETIME& field) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    if (text) field = ParseDate(text);
  }
};

constexpr auto kDate = wexpol::MakeCodec<DateCoding>();

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&Row::subservice_id>("subservice_id", wexpol::kKey),
    Column<&Row::device_id>("device_id"),
    Column<&Row::major>("major"),
    Column<&Row::minor>("minor"),
    Column<&Row::micro>("micro"),
    Column<&Row::build>("build"),
    Column<&Row::incremental>("incremental"),
    Column<&Row::version_date>("version_date", kDate),
    Column<&Row::out_of_date>("out_of_date", wexpol::kStrictBool, wexpol::kNotReported),
};

constexpr char kSingular[] = "subservice_version";

// An object with an id of its own is the record, also when it nests one under the singular name.
const rapidjson::Value& Unwrap(const rapidjson::Value& root) {
  if (root.HasMember("subservice_id") || root.HasMember("device_id")) return root;
  return wexpol::MemberOrSelf(
      root, {kSingular, "device_subservice_version", "device_subservice_versions"});
}

// The registry keeps the front of the row as it lies in memory, the gaps as zeros.
constexpr std::size_t kCopySize = 36;
using RegistryCopy = std::array<std::uint8_t, kCopySize>;
static_assert(std::is_trivially_copyable_v<Row> && offsetof(Row, device_id) == 4 &&
              offsetof(Row, version_date) == 28 && sizeof(SIMPLE_DATETIME) == 8 &&
              offsetof(Row, out_of_date) == kCopySize);

RegistryCopy CopyOf(const Row& row) {
  RegistryCopy copy;
  std::memcpy(copy.data(), &row, copy.size());
  copy[2] = copy[3] = copy[35] = 0;
  return copy;
}

// False when nothing follows the first number.
bool ParseVersion(std::string_view text, Row& row) {
  const auto first = TakeNumber(text);
  if (!first) return false;
  row.major = *first;
  const bool more = !text.empty();
  for (std::uint32_t* part : {&row.minor, &row.build, &row.incremental}) {
    if (text.empty()) break;
    text.remove_prefix(1);
    const auto number = TakeNumber(text);
    if (!number) break;
    *part = *number;
  }
  return more;
}

}  // namespace

const wexpol::Table& CDeviceSubserviceVersion::Table() {
  static const wexpol::Table& table = *new wexpol::Table(
      "device_subservice_versions", kSingular, kColumns,
      {.insert = "INSERT OR REPLACE INTO device_subservice_versions(subservice_id,device_id,major,"
                 "minor,micro,build,incremental,version_date,out_of_date) "
                 "VALUES(?,?,?,?,?,?,?,?,?)",
       .through_record = true,
       .unwrap = &Unwrap});
  return table;
}

CDeviceSubserviceVersion::CDeviceSubserviceVersion(short id) { subservice_id = id; }

CDeviceSubserviceVersion::CDeviceSubserviceVersion(short id, unsigned long new_major,
                                                   unsigned long new_incremental) {
  Set(id, new_major, new_incremental);
}

CDeviceSubserviceVersion::CDeviceSubserviceVersion(short id, unsigned long new_major,
                                                   unsigned long new_minor,
                                                   unsigned long new_build) {
  Set(id, new_major, new_minor, new_build);
}

CDeviceSubserviceVersion::CDeviceSubserviceVersion(short id, unsigned long new_major,
                                                   unsigned long new_minor, unsigned long new_build,
                                                   unsigned long new_incremental) {
  Set(id, new_major, new_minor, new_build);
  incremental = static_cast<std::uint32_t>(new_incremental);
}

void CDeviceSubserviceVersion::Set(short id, unsigned long new_major,
                                   unsigned long new_incremental) {
  subservice_id = id;
  major = static_cast<std::uint32_t>(new_major);
  incremental = static_cast<std::uint32_t>(new_incremental);
}

void CDeviceSubserviceVersion::Set(short id, unsigned long new_major, unsigned long new_minor,
                                   unsigned long new_build) {
  subservice_id = id;
  major = static_cast<std::uint32_t>(new_major);
  minor = static_cast<std::uint32_t>(new_minor);
  build = static_cast<std::uint32_t>(new_build);
}

void CDeviceSubserviceVersion::Set(short id, unsigned long new_major, unsigned long new_minor,
                                   const SYSTEMTIME& date) {
  subservice_id = id;
  major = static_cast<std::uint32_t>(new_major);
  minor = static_cast<std::uint32_t>(new_minor);
  SetVersionDate(date);
}

void CDeviceSubserviceVersion::Set(short id, const SIMPLE_DATETIME& date) {
  subservice_id = id;
  version_date = date;
}

void CDeviceSubserviceVersion::SetVersionDate(const SYSTEMTIME& date) {
  version_date = {.year = date.wYear,
                  .month = static_cast<std::int8_t>(date.wMonth),
                  .day = static_cast<std::int8_t>(date.wDay),
                  .hour = static_cast<std::int8_t>(date.wHour),
                  .minute = static_cast<std::int8_t>(date.wMinute),
                  .second = static_cast<std::int8_t>(date.wSecond)};
}

bool CDeviceSubserviceVersion::ParseJson(const rapidjson::Value& json) {
  Reset(true);
  if (!wexpol::ParseColumns(kColumns, &row(), json, wexpol::kPlain)) return false;
  if (subservice_id == -1 && device_id == -1) return false;
  const auto nested = json.FindMember(kSingular);
  if (nested != json.MemberEnd()) {
    static_cast<void>(wexpol::ParseColumns(kColumns, &row(), nested->value, wexpol::kPlain));
  }
  return true;
}

void CDeviceSubserviceVersion::GenerateJson(std::string& out) const {
  Row reported = row();
  long id;
  if (reported.device_id < 1 && CDeviceInfo::GetDeviceID(&id)) {
    reported.device_id = static_cast<std::int32_t>(id);
  }
  wexpol::GenerateRow(Table(), &reported, out);
}

bool CDeviceSubserviceVersion::UpdateDeviceSubserviceVersion(sqlite3* db, const char* json) {
  error_.clear();
  const int code = wexpol::AddObject(
      db, this, json, [this](const rapidjson::Value& value) { return ParseJson(value); });
  if (code != SQLITE_DONE) error_ = wexpol::FailureObject(db, code, wexpol::kObjectJsonError);
  return code == SQLITE_DONE;
}

bool CDeviceSubserviceVersion::WriteToRegistry(const wchar_t* name) {
  const RegistryCopy copy = CopyOf(row());
  return wexpol::WriteBinary(wexpol::AgentKey::kAgent, name, copy.data(), copy.size());
}

bool CDeviceSubserviceVersion::ReadFromRegistry(const wchar_t* name) {
  RegistryCopy copy = CopyOf(row());  // A shorter value leaves the end of the record.
  std::size_t size;
  if (!wexpol::ReadBinary(wexpol::AgentKey::kAgent, name, copy.data(), copy.size(), &size)) {
    return false;
  }
  std::memcpy(static_cast<void*>(&row()), copy.data(), copy.size());
  return true;
}

bool CDeviceSubserviceVersion::LoadFromRegistry(SUBSERVICE_ID id) {
  subservice_id = id;
  const auto version = wexpol::InstalledBackupVersion(id);
  return version && ParseVersion(*version, row());
}

std::string CDeviceSubserviceVersion::GetInstalledOnlineBackupVersion() {
  std::string text;
  for (const SUBSERVICE_ID id : {SUBSERVICE_ID_SHADOW_BACKUP, SUBSERVICE_ID_CLOUD_BACKUP}) {
    CDeviceSubserviceVersion version;
    version.LoadFromRegistry(id);
    for (const std::uint32_t part :
         {version.major, version.minor, version.build, version.incremental}) {
      if (part == UINT32_MAX) continue;
      text.append(text.empty() ? "" : ".").append(std::to_string(part));
    }
    if (!text.empty()) break;
  }
  return text;
}

std::int64_t CDeviceSubserviceVersion::HowLongSinceLastUpdate() const {
  constexpr std::uint16_t kLastIgnoredYear = 2000;
  if (version_date.year <= kLastIgnoredYear) return 0;
  const auto part = [](std::int8_t number) { return static_cast<std::uint16_t>(number); };
  SYSTEMTIME date{};
  date.wYear = version_date.year;
  date.wMonth = part(version_date.month);
  date.wDay = part(version_date.day);
  date.wHour = part(version_date.hour);
  date.wMinute = part(version_date.minute);
  date.wSecond = part(version_date.second);
  std::int64_t file_time = 0;
  wexpol::ToFileTime(date, &file_time);
  return wexpol::NowUtc() - wexpol::FileTimeToUnix(file_time);
}
