// When an entered password fits a stored one.

#ifndef WEXPOL_IDENTITY_PASSWORD_H_
#define WEXPOL_IDENTITY_PASSWORD_H_

#include <cstddef>
#include <string_view>

#include "wexpol/platform/hash.h"

namespace wexpol {

using Md5Function = bool (*)(const void* data, std::size_t size, Md5Digest* digest);

// The time of the comparison tells nothing of where the texts differ.
bool IsSameText(std::wstring_view a, std::wstring_view b);

// The stored text is the password itself, the 32 hexadecimal digits of the MD5 of its UTF-8, or 16
// digits: the first one of each byte of that MD5. An empty stored text fits nothing. Without `md5`
// working only the first form can fit. What is made of the password is wiped.
bool FitsPassword(std::wstring_view stored, std::wstring_view password,
                  Md5Function md5 = &CryptdllMd5);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_PASSWORD_H_
