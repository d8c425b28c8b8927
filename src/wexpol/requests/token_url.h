// The token of the local device as part of an address.

#ifndef WEXPOL_REQUESTS_TOKEN_URL_H_
#define WEXPOL_REQUESTS_TOKEN_URL_H_

#include <string>

struct sqlite3;

namespace wexpol {

// Appends "?dt=" and the token to an address that has no query yet. False, and `url` untouched,
// when the local device is not known or has no token.
bool AppendLocalDeviceToken(sqlite3* db, std::string& url);

}  // namespace wexpol

#endif  // WEXPOL_REQUESTS_TOKEN_URL_H_
