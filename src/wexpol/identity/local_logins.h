// What is asked about the logins of the local device, by their names.

#ifndef WEXPOL_IDENTITY_LOCAL_LOGINS_H_
#define WEXPOL_IDENTITY_LOCAL_LOGINS_H_

struct sqlite3;

namespace wexpol {

// Null and overlong names are not known; see CLogin::GetLogin.

// The id of a login; -1 when it is not known on the local device.
long LocalLoginId(sqlite3* db, const wchar_t* login_name);

// The policy of a login, -1 when it has none. For one that is not known on the local device, the
// first policy of all; -1 when there is no policy, or no local device.
long LocalLoginPolicyId(sqlite3* db, const wchar_t* login_name);

// Whether the file that `browser_path` names is the default browser of the login; see
// CLoginDetail::CheckDefaultBrowser. False when the local device is not known.
bool IsBrowserOfLocalLogin(sqlite3* db, const wchar_t* login_name, const char* browser_path);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_LOCAL_LOGINS_H_
