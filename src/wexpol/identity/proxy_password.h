// The encrypted form in which the console hands out the password of the proxy.

#ifndef WEXPOL_IDENTITY_PROXY_PASSWORD_H_
#define WEXPOL_IDENTITY_PROXY_PASSWORD_H_

#include <string_view>

#include "wexpol/records/text.h"

namespace wexpol {

// The plain text behind base64 text of triple DES (EDE, three keys) in CBC mode with PKCS padding
// over UTF-8. The text has no line breaks but may end in white space. The key is the UTF-8 of
// `key`: its first 24 bytes, filled up with zero bytes. Null when it cannot be decrypted or takes
// more than 255 wide characters.
WideText DecryptProxyPassword(std::wstring_view cipher_text, std::wstring_view key);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_PROXY_PASSWORD_H_
