// The credentials that the installer may use on the company's computers: "installation_logins".

#ifndef WEXPOL_DEVICECARE_INSTALLATION_LOGIN_H_
#define WEXPOL_DEVICECARE_INSTALLATION_LOGIN_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblInstallationLogin {
  std::int32_t id = -1;
  std::int32_t account_id = -1;  // Row of "accounts".
  wexpol::WideText login;        // domain\user or user
  wexpol::WideText password;     // As received from the console.
};

// A login with which the installer may reach the computers of the company.
class WEXPOL_API CInstallationLogin
    : public wexpol::Record<CInstallationLogin, tblInstallationLogin> {
 public:
  static const wexpol::Table& Table();

  CInstallationLogin() = default;
  // The texts are copied.
  CInstallationLogin(const wchar_t* user_login, const wchar_t* user_password);

  // What stands before the first backslash of the login; empty without one.
  std::wstring GetDomain() const;
  // What stands after it; the whole login without one.
  std::wstring GetUserNameW() const;
};

#endif  // WEXPOL_DEVICECARE_INSTALLATION_LOGIN_H_
