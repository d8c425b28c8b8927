#include "wexpol/identity/policy.h"

#include <utility>

#include "wexpol/identity/password.h"
#include "wexpol/identity/proxy_password.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/wipe.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kFlag16;
using wexpol::Sql;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblPolicy::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblPolicy::policy_owner_id>("policy_owner_id"),
    Column<&tblPolicy::name>("name"),
    Column<&tblPolicy::override_password>("override_password"),
    Column<&tblPolicy::is_default>("is_default", kFlag16),
    Column<&tblPolicy::uninstall_password>("uninstall_password"),
    Column<&tblPolicy::uninstall_requires_password>("uninstall_requires_password", kFlag16),
    Column<&tblPolicy::error_log_enabled>("error_log_enabled", kFlag16),
    Column<&tblPolicy::warning_log_enabled>("warning_log_enabled", kFlag16),
    Column<&tblPolicy::information_log_enabled>("information_log_enabled", kFlag16),
    Column<&tblPolicy::proxy_mode_id>("proxy_mode_id"),
    Column<&tblPolicy::proxy_type_id>("proxy_type_id"),
    Column<&tblPolicy::proxy_browser_id>("proxy_browser_id"),
    Column<&tblPolicy::proxy_server_auth_enabled>("proxy_server_auth_enabled", kFlag16),
    Column<&tblPolicy::proxy_auth_id>("proxy_auth_id"),
    Column<&tblPolicy::proxy_server_name>("proxy_server_name"),
    Column<&tblPolicy::proxy_server_username>("proxy_server_username"),
    Column<&tblPolicy::proxy_server_password>("proxy_server_password"),
    Column<&tblPolicy::proxy_server_port>("proxy_server_port"),
    Column<&tblPolicy::proxy_script>("proxy_script"),
    Column<&tblPolicy::force_ssl>("force_ssl", kFlag16),
    Column<&tblPolicy::analytics_enabled>("analytics_enabled", kFlag16),
    Column<&tblPolicy::self_defense_enabled>("self_defense_enabled", kFlag16),
    Column<&tblPolicy::proxy_bypass_local>("proxy_bypass_local", kFlag16),
    Column<&tblPolicy::company_id>("company_id"),
};

bool Differs(const wexpol::WideText& field, const wchar_t* text) { return field != text; }

}  // namespace

const wexpol::Table& CPolicy::Table() {
  static const wexpol::Table& table = *new wexpol::Table("policies", "policy", kColumns);
  return table;
}

bool CPolicy::GetDefaultPolicy(sqlite3* db) {
  return wexpol::QueryRecord(*this, db, Table().select());
}

PASSWORD_VALIDATION_RESULT CPolicy::IsValidPassword(const wchar_t* password, int, long policy_id,
                                                    sqlite3* db, short type) {
  wexpol::Statement select(db,
                           type == PASSWORD_TYPE_OVERRIDE
                               ? Sql("SELECT override_password FROM policies WHERE id=?")
                               : Sql("SELECT uninstall_password FROM policies WHERE id=?"),
                           policy_id);
  PASSWORD_VALIDATION_RESULT result = PASSWORD_NO_POLICY;
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    if (const char* text = password ? select.Text(0) : nullptr) {
      std::wstring stored = wexpol::Utf8ToWide(text);
      const wexpol::WipeAtEnd wipe(stored);
      if (wexpol::FitsPassword(stored, password)) return PASSWORD_VALID;
    }
    result = PASSWORD_INVALID;
  }
  return code == SQLITE_DONE ? result : PASSWORD_DB_ERROR;
}

bool CPolicy::SetProxyServerPasswordEncrypted(const wchar_t* cipher_text, std::wstring key) {
  const wexpol::WipeAtEnd wipe(key);
  wexpol::WideText plain;
  if (cipher_text) plain = wexpol::DecryptProxyPassword(cipher_text, key);
  if (plain != nullptr) proxy_server_password = std::move(plain);
  return proxy_server_password != nullptr;
}

bool CPolicy::IsProxyServerNameDifferent(const wchar_t* text) const {
  return Differs(proxy_server_name, text);
}
bool CPolicy::IsProxyServerUsernameDifferent(const wchar_t* text) const {
  return Differs(proxy_server_username, text);
}
bool CPolicy::IsProxyServerPasswordDifferent(const wchar_t* text) const {
  return Differs(proxy_server_password, text);
}
bool CPolicy::IsProxyScriptDifferent(const wchar_t* text) const {
  return Differs(proxy_script, text);
}

std::string CPolicy::GetProxyServerName() const {
  return wexpol::WideToUtf8(proxy_server_name.view());
}
std::string CPolicy::GetProxyServerUsername() const {
  return wexpol::WideToUtf8(proxy_server_username.view());
}
std::string CPolicy::GetProxyServerPassword() const {
  return wexpol::WideToUtf8(proxy_server_password.view());
}
std::string CPolicy::GetProxyScript() const { return wexpol::WideToUtf8(proxy_script.view()); }
