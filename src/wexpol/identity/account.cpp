#include "wexpol/identity/account.h"

#include <cstddef>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::AgentKey;
using wexpol::Column;
using wexpol::kKey;
using wexpol::kRequired;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAccount::id>("id", kKey | kRequired),
    Column<&tblAccount::locale_id>("locale_id", kRequired,
                                   &wexpol::OnParsed<CAccount, &CAccount::WriteLocaleIdToRegistry>),
    Column<&tblAccount::account_status_id>("account_status_id"),
    Column<&tblAccount::time_zone_id>("time_zone_id"),
};

constexpr wchar_t kLocaleValue[] = L"LID";
constexpr wchar_t kAccountValue[] = L"ACP";
constexpr std::size_t kLocaleDigits = 7;

}  // namespace

const wexpol::Table& CAccount::Table() {
  static const wexpol::Table& table = *new wexpol::Table("accounts", "account", kColumns);
  return table;
}

long CAccount::GetAccountId(sqlite3* db) {
  return wexpol::QueryInt(db, "SELECT id FROM accounts").value_or(-1);
}

bool CAccount::IsAccountDisabled(sqlite3* db) {
  const auto status = wexpol::QueryInt(db, "SELECT account_status_id FROM accounts");
  return status && static_cast<std::int16_t>(*status) == ACCOUNT_STATUS_DISABLED;
}

bool CAccount::GetLocaleId(unsigned long& locale_id, sqlite3* db) {
  wexpol::Statement select(db, "SELECT locale_id FROM accounts");
  if (!select.StepRow()) return false;
  if (!select.IsNull(0)) locale_id = static_cast<std::uint32_t>(select.Int(0));
  return true;
}

std::string CAccount::GetLocaleIdString() {
  const std::string digits = std::to_string(locale_id);
  return digits.size() <= kLocaleDigits ? digits : std::string();
}

bool CAccount::WriteLocaleIdToRegistry() {
  return wexpol::WriteDword(AgentKey::kAgent, kLocaleValue, locale_id);
}

bool CAccount::ReadLocaleIdFromRegistry() {
  return wexpol::ReadDword(AgentKey::kAgent, kLocaleValue, &locale_id);
}

bool CAccount::WriteToRegistry() {
  return wexpol::WriteBinary(AgentKey::kClass, kAccountValue, &id, sizeof id);
}

bool CAccount::CompareWithRegistry(long account_id) {
  std::int32_t stored;
  return wexpol::ReadBinary(AgentKey::kClass, kAccountValue, &stored, sizeof stored) &&
         stored == account_id;
}

bool CAccount::CompareWithRegistry() { return CompareWithRegistry(id); }
