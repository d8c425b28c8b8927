// One open database file, shared by the copies of a session.

#ifndef WEXPOL_POLICYDB_CONNECTION_H_
#define WEXPOL_POLICYDB_CONNECTION_H_

#include <sqlite3.h>

#include <memory>

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
  sqlite3* handle() const { return handle_; }
  static sqlite3* HandleOf(const CPolicyDB& session);

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

 private:
  explicit Connection(sqlite3* handle) : handle_(handle) {}

  sqlite3* handle_;
};

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_CONNECTION_H_
