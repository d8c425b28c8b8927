#include "wexpol/records/json_text.h"

#include <rapidjson/document.h>

#include <cstring>

#include "wexpol/platform/hex.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

// The character behind the backslash for what JSON has a short escape for, else 0.
char ShortEscape(char c) {
  switch (c) {
    case '"':
    case '\\':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

}  // namespace

void AppendJsonString(std::string_view text, std::string& out) {
  if (!IsUtf8(text)) return AppendJsonString(RepairUtf8(text), out);
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (const char escape = ShortEscape(c)) {
      out += {'\\', escape};
    } else if (byte < 0x20) {
      out += "\\u00";
      AppendHex(&byte, 1, out);
    } else {
      out += c;
    }
  }
  out += '"';
}

std::string_view JsonText(const rapidjson::Value& string) {
  const char* text = string.GetString();
  const std::size_t size = string.GetStringLength();
  const void* zero = std::memchr(text, '\0', size);
  return {text, zero ? static_cast<std::size_t>(static_cast<const char*>(zero) - text) : size};
}

}  // namespace wexpol
