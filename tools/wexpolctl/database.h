// The database file, opened for a command.

#ifndef WEXPOL_WEXPOLCTL_DATABASE_H_
#define WEXPOL_WEXPOLCTL_DATABASE_H_

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wexpol/policydb/policy_db.h"

namespace wexpolctl {

// One session, proven to be readable.
class Database {
 public:
  enum Use { kLook, kWrite };

  // Throws a Failure when the file is missing, or cannot be opened and read; a LostFile when what
  // is there is no database. To look leaves the file and those beside it as they are.
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

// The first findings of the engine's check of the whole file; none when it is sound.
std::vector<std::string> IntegrityFindings(sqlite3* db);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_DATABASE_H_
