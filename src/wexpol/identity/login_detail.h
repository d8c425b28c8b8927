// The default browsers of the logins: table "login_details".

#ifndef WEXPOL_IDENTITY_LOGIN_DETAIL_H_
#define WEXPOL_IDENTITY_LOGIN_DETAIL_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblLoginDetail {
  std::int32_t id = -1;
  std::int32_t login_id = -1;  // Row of "logins".
  wexpol::Text browser;        // File name of the executable.
  wexpol::Text browser_version;
};

// With which browser a login opens pages.
class WEXPOL_API CLoginDetail : public wexpol::Record<CLoginDetail, tblLoginDetail> {
 public:
  static const wexpol::Table& Table();

  // Empties the record and takes the browser of the first login of that name on any device: the
  // device id has no say. Names of more than 339 bytes of UTF-8 are not looked for.
  bool GetBrowserName(long device_id, const wchar_t* login_name, sqlite3* db);
  // Whether the file that `browser_path` names is that browser, ignoring case.
  bool CheckDefaultBrowser(long device_id, const wchar_t* login_name, const char* browser_path,
                           sqlite3* db);
  // Browsers that take more than 466 bytes less the digits of the id are refused.
  static bool UpdateLoginDetails(sqlite3* db, long detail_id, const char* browser_name);

  void SetBrowser(const char* text) { browser = text; }
};

#endif  // WEXPOL_IDENTITY_LOGIN_DETAIL_H_
