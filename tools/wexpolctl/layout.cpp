#include "tools/wexpolctl/layout.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

struct Range {
  char32_t first, last;
};

constexpr Range kObeyed[] = {{0, 0x1F},        {0x7F, 0x9F},     {0x61C, 0x61C},
                             {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},
                             {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
// What is put on the character before.
constexpr Range kNarrow[] = {{0x300, 0x36F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},  {0x3041, 0xA4CF},
                           {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},  {0xFE30, 0xFE6F},
                           {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},  {0x1F300, 0x1F64F},
                           {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <std::size_t kCount>
bool IsIn(const Range (&ranges)[kCount], char32_t c) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

// The first character of well-formed UTF-8, and its bytes.
char32_t FirstOf(std::string_view utf8, std::size_t* bytes) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  *bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t c = *bytes == 1 ? lead : lead & (0x7Fu >> *bytes);
  for (const char next : utf8.substr(1, *bytes - 1)) {
    c = c << 6 | (static_cast<unsigned char>(next) & 0x3Fu);
  }
  return c;
}

std::size_t WidthOf(char32_t c) { return IsIn(kNarrow, c) ? 0 : IsIn(kWide, c) ? 2 : 1; }

// How many bytes of the text fit: up to a blank where there is one.
std::size_t BytesThatFit(std::string_view text, std::size_t width) {
  std::size_t bytes = 0, at_blank = 0, shown = 0, size = 0;
  for (; bytes < text.size(); bytes += size) {
    shown += WidthOf(FirstOf(text.substr(bytes), &size));
    if (shown > width) return at_blank ? at_blank : std::max(bytes, size);
    if (text[bytes] == ' ') at_blank = bytes;
  }
  return bytes;
}

}  // namespace

std::string Printable(std::string_view utf8) {
  const std::string repaired = wexpol::RepairUtf8(utf8);
  std::string text;
  std::size_t bytes = 0;
  for (std::string_view left = repaired; !left.empty(); left.remove_prefix(bytes)) {
    const char32_t c = FirstOf(left, &bytes);
    if (c == '\n' || c == '\r' || c == '\t') {
      text += {'\\', c == '\n' ? 'n' : c == '\r' ? 'r' : 't'};
    } else if (IsIn(kObeyed, c)) {
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

std::size_t WidthOf(std::string_view text) {
  std::size_t width = 0;
  std::size_t bytes = 0;
  for (; !text.empty(); text.remove_prefix(bytes)) width += WidthOf(FirstOf(text, &bytes));
  return width;
}

std::string Padded(const std::string& text, std::size_t width, bool right) {
  const std::string blanks(width - std::min(width, WidthOf(text)), ' ');
  return right ? blanks + text : text + blanks;
}

std::vector<std::string> Wrapped(const std::string& text, std::size_t width) {
  std::vector<std::string> lines;
  std::string_view left = text;
  do {
    const std::size_t bytes = BytesThatFit(left, width);
    lines.emplace_back(left.substr(0, bytes));
    left.remove_prefix(bytes);
    left.remove_prefix(std::min(left.find_first_not_of(' '), left.size()));
  } while (!left.empty());
  return lines;
}

}  // namespace wexpolctl
