#include "wexpol/platform/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwctype>

namespace wexpol {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

struct Decoded {
  char32_t code;  // kReplacement for a unit that starts no character; it is then taken alone.
  std::size_t taken;
  bool ok;
};

constexpr Decoded kBad = {kReplacement, 1, false};

bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

Decoded DecodeUtf8(std::string_view text) {
  const auto lead = static_cast<std::uint8_t>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return kBad;

  char32_t code = lead & (0x7Fu >> size);
  for (std::size_t i = 1; i < size; ++i) {
    const auto byte = static_cast<std::uint8_t>(text[i]);
    if ((byte & 0xC0) != 0x80) return kBad;
    code = code << 6 | (byte & 0x3Fu);
  }
  static constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kLeast[size] || code > 0x10FFFF || IsSurrogate(code)) return kBad;
  return {code, size, true};
}

Decoded DecodeWide(std::wstring_view text) {
  const auto code = static_cast<char32_t>(text[0]);
  if (code > 0x10FFFF) return kBad;
  if (!IsSurrogate(code)) return {code, 1, true};
  if (!kWideIsUtf16 || code >= 0xDC00 || text.size() < 2) return kBad;
  const auto low = static_cast<char32_t>(text[1]);
  if (low < 0xDC00 || low > 0xDFFF) return kBad;
  return {0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00), 2, true};
}

char* EncodeUtf8(char32_t code, char* out) {
  if (code < 0x80) {
    *out++ = static_cast<char>(code);
    return out;
  }
  const int tail = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  static constexpr char32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
  *out++ = static_cast<char>(kLead[tail] | code >> 6 * tail);
  for (int i = tail - 1; i >= 0; --i) *out++ = static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
  return out;
}

wchar_t* EncodeWide(char32_t code, wchar_t* out) {
  if (kWideIsUtf16 && code >= 0x10000) {
    *out++ = static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
    *out++ = static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
  } else {
    *out++ = static_cast<wchar_t>(code);
  }
  return out;
}

// How many bytes at the front are ASCII; most texts are nothing else.
std::size_t AsciiPrefix(std::string_view text) {
  std::size_t at = 0;
  for (std::uint64_t eight; at + sizeof eight <= text.size(); at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if (eight & 0x8080808080808080u) break;
  }
  while (at < text.size() && static_cast<std::uint8_t>(text[at]) < 0x80) ++at;
  return at;
}

}  // namespace

std::size_t Utf8ToWide(std::string_view text, wchar_t* out) {
  wchar_t* end = out;
  while (!text.empty()) {
    const std::size_t plain = AsciiPrefix(text);
    for (std::size_t i = 0; i < plain; ++i) *end++ = static_cast<wchar_t>(text[i]);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Decoded next = DecodeUtf8(text);
    end = EncodeWide(next.code, end);
    text.remove_prefix(next.taken);
  }
  return static_cast<std::size_t>(end - out);
}

std::size_t WideToUtf8(std::wstring_view text, char* out) {
  char* end = out;
  while (!text.empty()) {
    const Decoded next = DecodeWide(text);
    end = EncodeUtf8(next.code, end);
    text.remove_prefix(next.taken);
  }
  return static_cast<std::size_t>(end - out);
}

std::wstring Utf8ToWide(std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  wide.resize(Utf8ToWide(text, wide.data()));
  return wide;
}

std::string WideToUtf8(std::wstring_view text) {
  std::string utf8(text.size() * kMaxUtf8PerWide, '\0');
  utf8.resize(WideToUtf8(text, utf8.data()));
  return utf8;
}

bool IsUtf8(std::string_view text) {
  for (;;) {
    text.remove_prefix(AsciiPrefix(text));
    if (text.empty()) return true;
    const Decoded next = DecodeUtf8(text);
    if (!next.ok) return false;
    text.remove_prefix(next.taken);
  }
}

// The high bit of (byte - 1) | byte is set for 0, whose borrow may spread, and from 128 on.
bool IsPlainAscii(std::string_view text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  std::uint64_t seen = 0;
  std::size_t at = 0;
  for (std::uint64_t eight; at + sizeof eight <= text.size(); at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    seen |= (eight - kOnes) | eight;
  }
  for (; at < text.size(); ++at) {
    const std::uint64_t byte = static_cast<std::uint8_t>(text[at]);
    seen |= (byte - 1) | byte;
  }
  return !(seen & (kOnes << 7));
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) {
  const auto lower = [](wchar_t c) { return std::towlower(static_cast<std::wint_t>(c)); };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](wchar_t x, wchar_t y) { return lower(x) == lower(y); });
}

std::string RepairUtf8(std::string_view text) { return WideToUtf8(Utf8ToWide(text)); }

}  // namespace wexpol
