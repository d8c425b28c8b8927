#include "tools/wexpolctl/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "tools/wexpolctl/secrets.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/json_text.h"

namespace wexpolctl {
namespace {

constexpr std::size_t kMaxWidth = 120;  // Of a table; wider ones are printed as blocks.
constexpr std::size_t kMaxCell = 60;    // Of a cell in a table.
constexpr std::string_view kGap = "  ";

// Columns that a text takes on a terminal, near enough: its characters.
std::size_t WidthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

void PrintPadded(std::ostream& out, const std::string& text, std::size_t width, bool right) {
  const std::string blanks(width - std::min(width, WidthOf(text)), ' ');
  out << (right ? blanks + text : text + blanks);
}

std::string JsonString(std::string_view text) {
  std::string json;
  wexpol::AppendJsonString(text, json);
  return json;
}

std::string JsonName(std::string name) {
  std::replace(name.begin(), name.end(), ' ', '_');
  return JsonString(name);
}

// Control characters, and those that turn or hide the text around them.
bool IsObeyed(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x061C || (c >= 0x200B && c <= 0x200F) ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF ||
         (c >= 0xFFF9 && c <= 0xFFFB) || (c >= 0xE0000 && c <= 0xE007F);
}

// The next character of well-formed UTF-8, and its bytes.
char32_t CharacterAt(std::string_view utf8, std::size_t* bytes) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  *bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t c = *bytes == 1 ? lead : lead & (0x7Fu >> *bytes);
  for (std::size_t i = 1; i < *bytes; ++i)
    c = c << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3F);
  return c;
}

}  // namespace

std::string Printable(std::string_view utf8) {
  const std::string repaired = wexpol::RepairUtf8(utf8);
  std::string text;
  std::size_t bytes = 0;
  for (std::string_view left = repaired; !left.empty(); left.remove_prefix(bytes)) {
    const char32_t c = CharacterAt(left, &bytes);
    if (c == '\n' || c == '\r' || c == '\t') {
      text += {'\\', c == '\n' ? 'n' : c == '\r' ? 'r' : 't'};
    } else if (IsObeyed(c)) {
      char escaped[16];
      std::snprintf(escaped, sizeof escaped, c < 0x100 ? "\\x%02x" : "\\u%04x",
                    static_cast<unsigned>(c));
      text += escaped;
    } else {
      text += left.substr(0, bytes);
    }
  }
  return text;
}

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
  char text[48];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", unsigned{local.wYear},
                unsigned{local.wMonth}, unsigned{local.wDay}, unsigned{local.wHour},
                unsigned{local.wMinute}, unsigned{local.wSecond});
  return {std::to_string(utc), text};
}

Cell Json(std::string json) {
  std::string text = Printable(json);
  return {std::move(json), std::move(text)};
}

void Listing::PrintText(std::ostream& out) const {
  std::vector<std::size_t> widths;
  std::size_t total = 0;
  std::size_t widest = 0;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::size_t width = WidthOf(columns_[i]);
    for (const auto& row : rows_) width = std::max(width, WidthOf(row[i].text));
    widest = std::max(widest, width);
    total += width + kGap.size();
    widths.push_back(width);
  }
  if (may_wrap_ && (widest > kMaxCell || total > kMaxWidth)) return PrintBlocks(out);
  const auto print = [&](std::size_t i, const std::string& text) {
    const bool right = !rows_.empty() && rows_.front()[i].is_number;
    const bool last = i + 1 == columns_.size();
    PrintPadded(out, text, last && !right ? 0 : widths[i], right);
    out << (last ? "\n" : kGap);
  };
  for (std::size_t i = 0; i < columns_.size(); ++i) print(i, columns_[i]);
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < columns_.size(); ++i) print(i, row[i].text);
  }
}

void Listing::PrintBlocks(std::ostream& out) const {
  std::size_t longest = 0;
  for (const auto& name : columns_) longest = std::max(longest, WidthOf(name));
  for (const auto& row : rows_) {
    if (&row != &rows_.front()) out << '\n';
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      PrintPadded(out, columns_[i], longest, false);
      out << kGap << row[i].text << '\n';
    }
  }
}

void Listing::PrintJson(std::ostream& out) const {
  out << '[';
  for (const auto& row : rows_) {
    out << (&row == &rows_.front() ? "\n    {" : ",\n    {");
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      out << (i ? ", " : "") << JsonName(columns_[i]) << ": " << row[i].json;
    }
    out << '}';
  }
  out << (rows_.empty() ? "]" : "\n  ]");
}

void Report::Add(std::string name, Cell value) {
  parts_.push_back({Part::kValue, std::move(name), std::move(value), Listing({})});
}

Listing& Report::AddListing(std::string name, std::vector<std::string> columns, bool may_wrap) {
  parts_.push_back({Part::kListing, std::move(name), {}, Listing(std::move(columns), may_wrap)});
  return parts_.back().listing;
}

void Report::AddLine(std::string text) {
  parts_.push_back({Part::kLine, {}, {{}, std::move(text)}, Listing({})});
}

void Report::AddBlock(std::string name, const std::string& lines) {
  parts_.push_back({Part::kBlock, std::move(name), {JsonString(lines), lines}, Listing({})});
}

void Report::PrintText(std::ostream& out) const {
  std::size_t longest = 0;
  for (const Part& part : parts_) {
    if (part.kind == Part::kValue) longest = std::max(longest, WidthOf(part.name));
  }
  bool first = true;
  for (const Part& part : parts_) {
    if (part.kind == Part::kValue) {
      PrintPadded(out, part.name, longest, false);
      out << kGap << part.value.text << '\n';
    } else if (part.kind == Part::kBlock) {
      out << part.value.text;
    } else if (part.kind == Part::kLine) {
      out << part.value.text << '\n';
    } else if (!part.listing.empty()) {
      if (!first) out << '\n';
      part.listing.PrintText(out);
    }
    first = false;
  }
}

void Report::PrintJson(std::ostream& out) const {
  const char* separator = "{\n  ";
  for (const Part& part : parts_) {
    if (part.kind == Part::kLine) continue;
    out << std::exchange(separator, ",\n  ") << JsonName(part.name) << ": ";
    if (part.kind == Part::kListing) {
      part.listing.PrintJson(out);
    } else {
      out << part.value.json;
    }
  }
  out << (*separator == '{' ? "{}\n" : "\n}\n");
}

}  // namespace wexpolctl
