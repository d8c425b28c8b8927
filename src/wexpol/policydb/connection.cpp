#include "wexpol/policydb/connection.h"

#include <string>
#include <string_view>
#include <utility>

#include "wexpol/platform/text.h"
#include "wexpol/policydb/database_key.h"
#include "wexpol/policydb/policy_db.h"
#include "wexpol/policydb/tools.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {
namespace {

constexpr std::size_t kPathBytes = 260;  // In UTF-8, the terminator included.

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

// False for a path that is null, empty (the engine would open a temporary database), too long or
// no well-formed text.
bool ToEnginePath(const wchar_t* path, std::string& utf8) {
  if (!path || !*path) return false;
  utf8 = WideToUtf8(path);
  return utf8.size() < kPathBytes && Utf8ToWide(utf8) == path;
}

}  // namespace

int Connection::Open(const wchar_t* path, int flags, int busy_timeout_ms,
                     std::shared_ptr<Connection>& connection) {
  std::string utf8;
  if (!ToEnginePath(path, utf8)) return SQLITE_CANTOPEN;
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(utf8.c_str(), &opened, flags, nullptr);
  Handle handle(opened, sqlite3_close);
  if (code != SQLITE_OK) return code;
  ApplyDatabaseKey(opened);
  if (busy_timeout_ms > 0) sqlite3_busy_timeout(opened, busy_timeout_ms);
  EnableStatementCache(opened);
  connection.reset(new Connection(handle.release()));
  return SQLITE_OK;
}

sqlite3* Connection::HandleOf(const CPolicyDB& session) { return session.handle(); }

sqlite3* HandleOf(const CPolicyDB& session) { return Connection::HandleOf(session); }

void Connection::Close() {
  DropStatementCache(handle_);
  sqlite3_close(std::exchange(handle_, nullptr));
}

}  // namespace wexpol
