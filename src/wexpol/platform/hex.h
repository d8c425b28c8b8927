// Bytes as hexadecimal digits.

#ifndef WEXPOL_PLATFORM_HEX_H_
#define WEXPOL_PLATFORM_HEX_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wexpol {

inline constexpr char kLowerHexDigits[] = "0123456789abcdef";
inline constexpr char kUpperHexDigits[] = "0123456789ABCDEF";

// What the digit counts; -1 for any other character.
template <typename Char>
constexpr int HexDigit(Char c) {
  if (c >= Char{'0'} && c <= Char{'9'}) return static_cast<int>(c - Char{'0'});
  if (c >= Char{'a'} && c <= Char{'f'}) return static_cast<int>(c - Char{'a'}) + 10;
  if (c >= Char{'A'} && c <= Char{'F'}) return static_cast<int>(c - Char{'A'}) + 10;
  return -1;
}

// Appends two digits for each byte.
inline void AppendHex(const std::uint8_t* bytes, std::size_t size, std::string& out,
                      const char* digits = kLowerHexDigits) {
  for (std::size_t i = 0; i < size; ++i) out += {digits[bytes[i] >> 4], digits[bytes[i] & 15]};
}

// Takes exactly two digits for each byte; false, the bytes kept, for any other text.
[[nodiscard]] inline bool ReadHex(std::string_view digits, std::uint8_t* bytes, std::size_t size) {
  if (digits.size() != 2 * size) return false;
  for (const char c : digits) {
    if (HexDigit(c) < 0) return false;
  }
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] =
        static_cast<std::uint8_t>(HexDigit(digits[2 * i]) * 16 + HexDigit(digits[2 * i + 1]));
  }
  return true;
}

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_HEX_H_
