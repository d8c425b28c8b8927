#include "wexpol/devicecare/install_invite.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::AgentKey;
using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblInstallInvite::id>("id", wexpol::kKey),
    Column<&tblInstallInvite::account_id>("account_id"),
    Column<&tblInstallInvite::email_address>("email_address"),
    Column<&tblInstallInvite::token>("token"),
    Column<&tblInstallInvite::link>("link"),
    Column<&tblInstallInvite::row_version>("row_version", wexpol::kUint64NullIsZero),
};

constexpr wchar_t kInviteValue[] = L"INV";

// The name=value pairs of a query. Of equal names the first counts.
std::map<std::string_view, std::string_view> SplitQuery(std::string_view query) {
  std::map<std::string_view, std::string_view> pairs;
  while (!query.empty()) {
    const std::string_view pair = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(pair.size() + 1, query.size()));
    if (pair.empty()) continue;
    const std::string_view name = pair.substr(0, pair.find('='));
    pairs.emplace(name, pair.substr(std::min(name.size() + 1, pair.size())));
  }
  return pairs;
}

}  // namespace

const wexpol::Table& CInstallInvite::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("install_invites", "install_invite", kColumns);
  return table;
}

CInstallInvite::CInstallInvite(long invite_id, const wchar_t* invite_token) {
  id = static_cast<std::int32_t>(invite_id);
  token = invite_token;
}

bool CInstallInvite::GetToken(wchar_t** out, sqlite3* db) {
  *out = nullptr;
  const wexpol::Text first = wexpol::QueryText(db, "SELECT token FROM install_invites");
  if (first == nullptr) return false;
  *out = wexpol::ToWide(first).release();
  return true;
}

std::wstring CInstallInvite::GetToken() const { return std::wstring(token.view()); }

std::string CInstallInvite::GetTokenA() const { return wexpol::WideToUtf8(token.view()); }

bool CInstallInvite::GetRecord(sqlite3* db, long invite_id, std::string& error) {
  if (invite_id < 1 && ReadInstallInviteIdFromRegistry()) invite_id = id;
  return wexpol::ReadRecord(*this, error, db, Table().select_by_key(), invite_id);
}

bool CInstallInvite::DoesRecordAlreadyExist(sqlite3* db, long invite_id) {
  wexpol::Statement select(db, "SELECT id FROM install_invites WHERE id=?");
  if (!select.ok()) return false;
  if (invite_id == -1) {
    select.BindNull(1);  // As the field is bound, so that no id equals one that is not set.
  } else {
    select.Bind(1, std::int64_t{invite_id});
  }
  if (!select.ok()) throw select.code();
  return select.StepRow();
}

bool CInstallInvite::Add2DB_or_UpdateDB(sqlite3* db, const char* json) {
  wexpol::Document document;
  if (!document.Parse(json) || !document.root().IsObject()) return false;
  ParseJson(document.root());
  return (DoesRecordAlreadyExist(db, id) ? UpdateDB(db) : Add2DB(db)) == SQLITE_DONE;
}

long CInstallInvite::GetAccountId(const char* json) {
  wexpol::Document document;
  if (!document.Parse(json)) return -1;
  const rapidjson::Value* record = &document.root();
  if (record->IsArray() && !record->Empty()) record = record->Begin();
  if (!record->IsObject()) return -1;
  const auto account = record->FindMember("account_id");
  return account != record->MemberEnd() && account->value.IsInt() ? account->value.GetInt() : -1;
}

bool CInstallInvite::WriteInstallInviteIdToRegistry() const {
  return wexpol::WriteDword(AgentKey::kClass, kInviteValue, static_cast<std::uint32_t>(id));
}

bool CInstallInvite::ReadInstallInviteIdFromRegistry() {
  std::uint32_t stored;
  if (!wexpol::ReadDword(AgentKey::kAgent, kInviteValue, &stored)) return false;
  id = static_cast<std::int32_t>(stored);
  return true;
}

bool CInstallInvite::DeleteInstallInviteIdFromRegistry() {
  return wexpol::DeleteValue(AgentKey::kAgent, kInviteValue);
}

bool CInstallInvite::GetDownloadUrl(std::string& out, sqlite3* db, long invite_id) {
  const wexpol::Text found =
      invite_id < 1
          ? wexpol::QueryText(db,
                              "SELECT link FROM install_invites WHERE row_version="
                              "(SELECT MAX(row_version) FROM install_invites)")
          // The two blanks are part of the statement's text, which is kept to the letter.
          : wexpol::QueryText(db, "SELECT link FROM install_invites WHERE  id=?", invite_id);
  if (found == nullptr) return false;
  out = found.view();
  return true;
}

bool CInstallInvite::BuildInstallCmdLineParameters(std::wstring& out) {
  const std::size_t mark = link.view().find('?');
  if (mark == std::string_view::npos) return false;
  const auto pairs = SplitQuery(link.view().substr(mark + 1));
  if (pairs.empty()) return false;
  std::string parameters;
  for (const auto& [name, value] : pairs) {
    parameters.append("-").append(name).append(" \"").append(value).append("\" ");
  }
  out = wexpol::Utf8ToWide(parameters);
  return true;
}
