// Several writes that stand or fall together.

#ifndef WEXPOL_RECORDS_WRITE_SCOPE_H_
#define WEXPOL_RECORDS_WRITE_SCOPE_H_

#include <sqlite3.h>

namespace wexpol {

// Takes the file's write lock at once, waiting as long as the busy timeout says, so that no other
// process writes between what is read and what is written here. Everything is taken back unless it
// is committed. Within a transaction of the caller, which then decides, it does nothing.
class WriteScope {
 public:
  explicit WriteScope(sqlite3* db);
  ~WriteScope();
  WriteScope(const WriteScope&) = delete;
  WriteScope& operator=(const WriteScope&) = delete;

  bool ok() const { return code_ == SQLITE_OK; }
  // SQLITE_OK, or why the lock was not to be had.
  int code() const { return code_; }
  bool Commit();

 private:
  int code_ = SQLITE_OK;
  sqlite3* db_ = nullptr;  // Null when there is nothing to end.
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_WRITE_SCOPE_H_
