#include "wexpol/policydb/connection.h"

#include <string>
#include <string_view>
#include <utility>

#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"
#include "wexpol/policydb/policy_db.h"
#include "wexpol/records/document_table.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {
namespace {

constexpr std::size_t kPathBytes = 260;  // In UTF-8, the terminator included.

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
  EngineHandle handle;
  const int code = OpenEncrypted(utf8, flags, &handle);
  if (code != SQLITE_OK) return code;
  KeepSideFiles(handle.get());
  return Adopt(std::move(handle), busy_timeout_ms, connection);
}

int Connection::Adopt(EngineHandle handle, int busy_timeout_ms,
                      std::shared_ptr<Connection>& connection) {
  if (busy_timeout_ms > 0) sqlite3_busy_timeout(handle.get(), busy_timeout_ms);
  EnableStatementCache(handle.get());
  EnableDocumentTable(handle.get());
  connection.reset(new Connection(std::move(handle)));
  return SQLITE_OK;
}

int Connection::OpenUntouched(CPolicyDB& session, const std::wstring& path, int busy_timeout_ms) {
  session.CloseDB();
  EngineHandle handle;
  const int code = wexpol::OpenUntouched(path, &handle);
  return code == SQLITE_OK ? Adopt(std::move(handle), busy_timeout_ms, session.m_db) : code;
}

sqlite3* Connection::HandleOf(const CPolicyDB& session) { return session.handle(); }

sqlite3* HandleOf(const CPolicyDB& session) { return Connection::HandleOf(session); }

int OpenUntouched(CPolicyDB& session, const std::wstring& path, int busy_timeout_ms) {
  return Connection::OpenUntouched(session, path, busy_timeout_ms);
}

void Connection::Close() {
  DropStatementCache(handle_.get());
  handle_.reset();
}

}  // namespace wexpol
