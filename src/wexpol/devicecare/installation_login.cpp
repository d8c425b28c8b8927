#include "wexpol/devicecare/installation_login.h"

#include <cstddef>
#include <string_view>

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kRequired;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblInstallationLogin::id>("id", wexpol::kKey | kRequired),
    Column<&tblInstallationLogin::account_id>("account_id", kRequired),
    Column<&tblInstallationLogin::login>("login"),
    Column<&tblInstallationLogin::password>("password"),
};

}  // namespace

const wexpol::Table& CInstallationLogin::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("installation_logins", "installation_login", kColumns);
  return table;
}

CInstallationLogin::CInstallationLogin(const wchar_t* user_login, const wchar_t* user_password) {
  login = user_login;
  password = user_password;
}

std::wstring CInstallationLogin::GetDomain() const {
  const std::size_t backslash = login.view().find(L'\\');
  if (backslash == std::wstring_view::npos) return {};
  return std::wstring(login.view().substr(0, backslash));
}

std::wstring CInstallationLogin::GetUserNameW() const {
  // npos + 1 is 0: the whole login.
  return std::wstring(login.view().substr(login.view().find(L'\\') + 1));
}
