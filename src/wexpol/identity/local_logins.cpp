#include "wexpol/identity/local_logins.h"

#include "wexpol/identity/local_device.h"
#include "wexpol/identity/login.h"
#include "wexpol/identity/login_detail.h"
#include "wexpol/records/query.h"

namespace wexpol {

long LocalLoginId(sqlite3* db, const wchar_t* login_name) {
  return AskLocalDevice(db, -1L, [&](long device_id) -> long {
    CLogin login;
    return login.GetLogin(db, device_id, login_name) ? login.id : -1;
  });
}

long LocalLoginPolicyId(sqlite3* db, const wchar_t* login_name) {
  return AskLocalDevice(db, -1L, [&](long device_id) -> long {
    CLogin login;
    if (login.GetLogin(db, device_id, login_name)) return login.policy_id;
    // Read in the order of the rows, not in that of an index over the ids.
    return QueryInt(db, "SELECT id FROM policies NOT INDEXED").value_or(-1);
  });
}

bool IsBrowserOfLocalLogin(sqlite3* db, const wchar_t* login_name, const char* browser_path) {
  return AskLocalDevice(db, false, [&](long device_id) {
    return CLoginDetail().CheckDefaultBrowser(device_id, login_name, browser_path, db);
  });
}

}  // namespace wexpol
