// One open database file, shared by the copies of a session.

#ifndef WEXPOL_POLICYDB_CONNECTION_H_
#define WEXPOL_POLICYDB_CONNECTION_H_

#include <sqlite3.h>

#include <memory>
#include <string>
#include <utility>

#include "wexpol/policydb/encrypted_file.h"

class CPolicyDB;

namespace wexpol {

// Closed once, by whichever session closes first; handle() is null from then on, so the other
// copies can never touch a dead handle.
class Connection {
 public:
  // Opens `path` with the key of the database, a statement cache and, when it is positive, a busy
  // timeout in milliseconds. Answers the engine's code; on failure `connection` is left alone.
  static int Open(const wchar_t* path, int flags, int busy_timeout_ms,
                  std::shared_ptr<Connection>& connection);

  ~Connection() { Close(); }
  void Close();
  sqlite3* handle() const { return handle_.get(); }

  // See the functions of these names.
  static sqlite3* HandleOf(const CPolicyDB& session);
  static int OpenUntouched(CPolicyDB& session, const std::wstring& path, int busy_timeout_ms);

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

 private:
  explicit Connection(EngineHandle handle) : handle_(std::move(handle)) {}
  static int Adopt(EngineHandle handle, int busy_timeout_ms,
                   std::shared_ptr<Connection>& connection);

  EngineHandle handle_;
};

// The rest is for what is linked with the library; nothing of it is exported.

// The connection of a session, which stays the session's; null when it is closed.
sqlite3* HandleOf(const CPolicyDB& session);

// Opens a file in a session only to look at it, closing what the session had open: every write
// fails, and when the session is closed the file is as it was, without a file beside it that was
// not there. Answers the engine's code. A file on its own, without the engine's files beside it, is
// taken as one that nobody writes to. Only the index of a log may be made anew, where a log lies
// beside the file without one.
[[nodiscard]] int OpenUntouched(CPolicyDB& session, const std::wstring& path, int busy_timeout_ms);

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_CONNECTION_H_
