// Conversions between UTF-8 and the wide encoding of the target: UTF-16 where wchar_t has 16 bits,
// else UTF-32. What is not well formed becomes U+FFFD: each byte, or lone surrogate, by itself.

#ifndef WEXPOL_PLATFORM_TEXT_H_
#define WEXPOL_PLATFORM_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace wexpol {

std::wstring Utf8ToWide(std::string_view text);
std::string WideToUtf8(std::wstring_view text);

// The same of a text in the system's code page; on the host that is UTF-8.
std::wstring SystemCodePageToWide(std::string_view text);

// Whether every byte belongs to a well-formed character.
bool IsUtf8(std::string_view text);

// Whether there is nothing but ASCII, and no zero character.
bool IsPlainAscii(std::string_view text);

// `text` with each byte that is not well formed replaced.
std::string RepairUtf8(std::string_view text);

// Whether the texts differ at most in the case of letters: of ASCII, or for wide texts of all that
// the process's locale knows.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b);

// The conversions into a buffer that is large enough. Both answer how many units they wrote.
// UTF-8 never has fewer units than the wide text.
std::size_t Utf8ToWide(std::string_view text, wchar_t* out);
constexpr std::size_t kMaxUtf8PerWide = sizeof(wchar_t) == 2 ? 3 : 4;
std::size_t WideToUtf8(std::wstring_view text, char* out);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_TEXT_H_
