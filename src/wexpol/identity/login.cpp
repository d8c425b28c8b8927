#include "wexpol/identity/login.h"

#include <cstddef>
#include <string>

#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblLogin::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblLogin::device_id>("device_id"),
    Column<&tblLogin::name>("name"),
    Column<&tblLogin::policy_id>("policy_id"),
    Column<&tblLogin::description>("description"),
    Column<&tblLogin::comment>("comment"),
    Column<&tblLogin::is_admin>("is_admin", wexpol::kFlag16),
};

// What a lookup has room for: the bytes of the name and the digits of the device id.
constexpr std::size_t kLookupBytes = 462;

}  // namespace

const wexpol::Table& CLogin::Table() {
  static const wexpol::Table& table = *new wexpol::Table("logins", "login", kColumns);
  return table;
}

bool CLogin::GetLogin(sqlite3* db, long of_device, const wchar_t* login_name) {
  if (!login_name) return false;
  const std::string utf8 = wexpol::WideToUtf8(login_name);
  if (utf8.size() + std::to_string(of_device).size() > kLookupBytes) return false;
  return wexpol::QueryRecord(*this, db, "SELECT * FROM logins WHERE device_id=? AND name=?",
                             of_device, utf8);
}

long CLogin::GetPolicyId(sqlite3* db, long login_id) {
  return wexpol::QueryInt(db, "SELECT policy_id FROM logins WHERE id=?", login_id).value_or(-1);
}
