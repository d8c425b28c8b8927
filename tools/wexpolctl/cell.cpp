// The values of a report.

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>
#include <cstdio>
#include <utility>

#include "tools/wexpolctl/report.h"
#include "tools/wexpolctl/secrets.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

std::string JsonString(std::string_view text) {
  const std::string utf8 = wexpol::RepairUtf8(text);
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
  return buffer.GetString();
}

}  // namespace

Cell Nothing() { return {"null", "-"}; }

Cell Text(std::string_view utf8) {
  const std::string text = WithoutCredentials(utf8);
  return {JsonString(text), Printable(text)};
}

Cell Text(std::wstring_view wide) { return Text(wexpol::WideToUtf8(wide)); }

Cell Number(std::int64_t value) { return {std::to_string(value), std::to_string(value), true}; }

Cell Flag(bool value) { return value ? Cell{"true", "yes"} : Cell{"false", "no"}; }

Cell Size(std::uint64_t bytes) {
  constexpr std::array<const char*, 5> kUnits = {"bytes", "KB", "MB", "GB", "TB"};
  auto shown = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (; shown >= 1024 && unit + 1 < kUnits.size(); ++unit) shown /= 1024;
  char text[48];
  std::snprintf(text, sizeof text, unit ? "%.1f %s" : "%.0f %s", shown, kUnits[unit]);
  return {std::to_string(bytes), text};
}

Cell Duration(std::int64_t seconds) {
  struct Unit {
    std::int64_t seconds;
    const char* name;
  };
  constexpr Unit kUnits[] = {{86400, " d "}, {3600, " h "}, {60, " min "}, {1, " s "}};
  std::string text = seconds < 0 ? "-" : "";
  std::int64_t left = seconds < 0 ? -seconds : seconds;
  int shown = 0;  // The two largest units say enough.
  for (const Unit& unit : kUnits) {
    if (shown == 2 || (left < unit.seconds && shown == 0 && unit.seconds > 1)) continue;
    text += std::to_string(left / unit.seconds) + unit.name;
    left %= unit.seconds;
    ++shown;
  }
  text.pop_back();
  return {std::to_string(seconds), text};
}

Cell Instant(std::int64_t utc) {
  const SYSTEMTIME local = wexpol::UtcToLocal(utc);
  std::int64_t as_if_utc = 0;
  wexpol::ToFileTime(local, &as_if_utc);
  const std::int64_t ahead = as_if_utc / wexpol::kFileTimePerSecond -
                             wexpol::UnixToFileTime(utc) / wexpol::kFileTimePerSecond;
  const auto minutes = static_cast<int>((ahead < 0 ? -ahead : ahead) / 60);
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u %c%02d:%02d",
                unsigned{local.wYear}, unsigned{local.wMonth}, unsigned{local.wDay},
                unsigned{local.wHour}, unsigned{local.wMinute}, unsigned{local.wSecond},
                ahead < 0 ? '-' : '+', minutes / 60, minutes % 60);
  return {std::to_string(utc), text};
}

Cell Json(std::string json) {
  std::string text = Printable(json);
  return {std::move(json), std::move(text)};
}

Cell Bad(Cell cell) {
  cell.is_bad = true;
  return cell;
}

}  // namespace wexpolctl
