#include "identity/account.h"

#include "platform/agent_registry.h"
#include "records/query.h"
#include "records/table.h"

namespace {

using platform::AgentKey;
using records::Column;
using records::kKey;
using records::kRequired;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblAccount::id>("id", kKey | kRequired),
    Column<&tblAccount::locale_id>(
        "locale_id", kRequired, &records::OnParsed<CAccount, &CAccount::WriteLocaleIdToRegistry>),
    Column<&tblAccount::account_status_id>("account_status_id"),
    Column<&tblAccount::time_zone_id>("time_zone_id"),
};

constexpr wchar_t kLocaleValue[] = L"LID";
constexpr wchar_t kAccountValue[] = L"ACP";
constexpr std::size_t kLocaleDigits = 7;

}  // namespace

const records::Table& CAccount::Table() {
  static const records::Table& table = *new records::Table("accounts", "account", kColumns);
  return table;
}

long CAccount::GetAccountId(sqlite3* db) {
  return records::QueryInt(db, "SELECT id FROM accounts").value_or(-1);
}

bool CAccount::IsAccountDisabled(sqlite3* db) {
  const auto status = records::QueryInt(db, "SELECT account_status_id FROM accounts");
  return status && static_cast<std::int16_t>(*status) == ACCOUNT_STATUS_DISABLED;
}

bool CAccount::GetLocaleId(unsigned long& locale_id, sqlite3* db) {
  records::Statement select(db, "SELECT locale_id FROM accounts");
  if (!select.Row()) return false;
  if (!select.IsNull(0)) locale_id = static_cast<std::uint32_t>(select.Int(0));
  return true;
}

std::string CAccount::GetLocaleIdString() {
  const std::string digits = std::to_string(locale_id);
  return digits.size() <= kLocaleDigits ? digits : std::string();
}

bool CAccount::WriteLocaleIdToRegistry() {
  return platform::WriteDword(AgentKey::kAgent, kLocaleValue, locale_id);
}

bool CAccount::ReadLocaleIdFromRegistry() {
  return platform::ReadDword(AgentKey::kAgent, kLocaleValue, &locale_id);
}

bool CAccount::WriteToRegistry() {
  return platform::WriteBinary(AgentKey::kClass, kAccountValue, &id, sizeof id);
}

bool CAccount::CompareWithRegistry(long account_id) {
  std::int32_t stored;
  return platform::ReadBinary(AgentKey::kClass, kAccountValue, &stored, sizeof stored) &&
         stored == account_id;
}

bool CAccount::CompareWithRegistry() { return CompareWithRegistry(id); }
