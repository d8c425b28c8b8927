#include "devicecare/installation_login.h"

#include "records/table.h"

namespace {

using records::Column;
using records::kRequired;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblInstallationLogin::id>("id", records::kKey | kRequired),
    Column<&tblInstallationLogin::account_id>("account_id", kRequired),
    Column<&tblInstallationLogin::login>("login"),
    Column<&tblInstallationLogin::password>("password"),
};

}  // namespace

const records::Table& CInstallationLogin::Table() {
  static const records::Table& table =
      *new records::Table("installation_logins", "installation_login", kColumns);
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
