// A copy of the database in memory, to try on it what is not to be done.

#ifndef WEXPOL_WEXPOLCTL_REHEARSAL_H_
#define WEXPOL_WEXPOLCTL_REHEARSAL_H_

#include <string>
#include <vector>

#include "tools/wexpolctl/report.h"
#include "wexpol/policydb/policy_db.h"
#include "wexpol/records/table.h"

struct sqlite3;

namespace wexpolctl {

// One row that differs; in a table without a key a row is only added or removed.
struct RowChange {
  enum Kind { kAdded, kRemoved, kChanged } kind;
  Cell key;
  struct Column {
    std::string name;
    Cell before;
    Cell after;
  };
  std::vector<Column> columns;  // Those that differ, their secrets masked.
};

// A session on a copy of all that the file holds, which stays as it is.
class Rehearsal {
 public:
  // Throws a Failure when the file cannot be read to its end.
  explicit Rehearsal(sqlite3* file);
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;

  CPolicyDB& session() { return session_; }
  sqlite3* handle() const;

  // What has become of the rows of a table, in the columns that a document can fill.
  std::vector<RowChange> ChangesOf(const wexpol::Table& table) const;

 private:
  CPolicyDB session_;
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_REHEARSAL_H_
