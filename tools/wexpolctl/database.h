// The database file, opened for a command.

#ifndef WEXPOL_WEXPOLCTL_DATABASE_H_
#define WEXPOL_WEXPOLCTL_DATABASE_H_

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wexpol/policydb/policy_db.h"
#include "wexpol/records/statement.h"

namespace wexpolctl {

// One session, proven to be readable.
class Database {
 public:
  // To look and to ask leave the file and those beside it as they are. The agent's questions are
  // asked of a whole file only: their answers do not tell a failure of the engine.
  enum Use { kLook, kAsk, kWrite };

  // Throws a Failure when the file is missing, or cannot be opened and read; a LostFile when what
  // is there is no database, or not whole.
  explicit Database(const std::wstring& path, Use use = kLook);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  CPolicyDB& session() { return session_; }
  sqlite3* handle() const;

 private:
  CPolicyDB session_;
};

// The tables of the file by name, without the engine's own; `views` adds the views.
std::vector<std::string> TableNames(sqlite3* db, bool views = false);
std::vector<std::string> ColumnNames(sqlite3* db, const std::string& table);
std::string Quoted(const std::string& identifier);
// Nothing when the table is missing or cannot be read.
std::optional<std::int64_t> CountRows(sqlite3* db, const std::string& table);

// Which device this computer is, found as the agent does but without storing it; nothing when it is
// none.
std::optional<long> LocalDeviceId(sqlite3* db);

// What keeps a file from being whole: the first findings of the engine's check, else the tables
// that are missing or that this version cannot read.
std::vector<std::string> Findings(sqlite3* db);

// Throws a Failure when the last step of a statement answered another code than SQLITE_DONE.
void RequireDone(int code);

// Runs `action` on each row. Throws a Failure when they cannot be read to the end.
template <typename Action>
void ForEachRow(wexpol::Statement& select, Action&& action) {
  int code;
  while ((code = select.Step()) == SQLITE_ROW) action();
  RequireDone(code);
}

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_DATABASE_H_
