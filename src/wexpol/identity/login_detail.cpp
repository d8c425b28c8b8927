#include "wexpol/identity/login_detail.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblLoginDetail::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblLoginDetail::login_id>("login_id"),
    Column<&tblLoginDetail::browser>("browser"),
    Column<&tblLoginDetail::browser_version>("browser_version"),
};

constexpr std::size_t kLookupBytes = 339;  // What a lookup has room for: the name.
constexpr std::size_t kUpdateBytes =
    466;  // What an update has room for: browser, digits of the id.
constexpr std::size_t kFileNameChars = 259;  // The longest file name that is compared.

}  // namespace

const wexpol::Table& CLoginDetail::Table() {
  static const wexpol::Table& table = *new wexpol::Table("login_details", "login_detail", kColumns);
  return table;
}

bool CLoginDetail::GetBrowserName(long, const wchar_t* login_name, sqlite3* db) {
  Reset(true);
  if (!login_name) return false;
  const std::string utf8 = wexpol::WideToUtf8(login_name);
  if (utf8.size() > kLookupBytes) return false;
  wexpol::Statement select(db,
                           "SELECT login_details.browser FROM login_details "
                           "INNER JOIN logins ON logins.id=login_details.login_id "
                           "INNER JOIN devices ON devices.id=logins.device_id WHERE logins.name=?",
                           utf8);
  if (!select.StepRow()) return false;
  browser = select.Text(0);
  return true;
}

bool CLoginDetail::CheckDefaultBrowser(long device_id, const wchar_t* login_name,
                                       const char* browser_path, sqlite3* db) {
  if (!browser_path) return false;
  std::string_view file_name(browser_path);
  file_name.remove_prefix(file_name.rfind('\\') + 1);  // Nothing when there is no folder.
  if (file_name.size() > kFileNameChars) return false;
  return GetBrowserName(device_id, login_name, db) && browser != nullptr &&
         wexpol::EqualIgnoringCase(browser.view(), file_name);
}

bool CLoginDetail::UpdateLoginDetails(sqlite3* db, long detail_id, const char* browser_name) {
  const std::size_t size = browser_name ? std::string_view(browser_name).size() : 0;
  if (size + std::to_string(detail_id).size() > kUpdateBytes) return false;
  return wexpol::Execute(db, "UPDATE login_details SET browser=? WHERE id=?", browser_name,
                         detail_id);
}
