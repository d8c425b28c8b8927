// Spans of several statements: one consistent read, or writes that stand or fall together.

#ifndef WEXPOL_RECORDS_SCOPES_H_
#define WEXPOL_RECORDS_SCOPES_H_

#include <optional>

#include "wexpol/records/statement.h"

namespace wexpol {

// All prepare what ends them before they begin, so that ending needs no memory. What cannot be
// ended all the same is rolled back before the next statement of the connection. Within a
// transaction of the caller, which then decides, the two scopes do nothing.

// Holds one consistent read of the file for a question of several statements: nothing changes
// between them, and the file is locked and checked once. To be released before anything is written.
class ReadScope {
 public:
  explicit ReadScope(sqlite3* db);
  ~ReadScope() { Release(); }
  void Release();

  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;

 private:
  sqlite3* db_;
  std::optional<Statement> end_;  // Empty when there is nothing to release.
};

// Takes the file's write lock at once, waiting as long as the busy timeout says, so that no other
// process writes between what is read and what is written here. Everything is taken back unless it
// is committed.
class WriteScope {
 public:
  explicit WriteScope(sqlite3* db);
  ~WriteScope();
  WriteScope(const WriteScope&) = delete;
  WriteScope& operator=(const WriteScope&) = delete;

  [[nodiscard]] bool ok() const { return code_ == SQLITE_OK; }
  // SQLITE_OK, or why the lock was not to be had.
  int code() const { return code_; }
  [[nodiscard]] bool Commit();

 private:
  sqlite3* db_;
  int code_ = SQLITE_OK;
  bool open_ = false;  // There is something to end.
  std::optional<Statement> commit_;
  std::optional<Statement> rollback_;
};

// Writes that stand or fall together: they are taken back unless they are committed. Within a
// transaction, whoever has opened it, what it wrote before stays; outside of one they are a
// transaction of their own.
class Savepoint {
 public:
  explicit Savepoint(sqlite3* db);
  ~Savepoint();
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;

  [[nodiscard]] bool ok() const { return code_ == SQLITE_OK; }
  // SQLITE_OK, or why it could not begin.
  int code() const { return code_; }
  // SQLITE_DONE, or what went wrong.
  [[nodiscard]] int Commit();
  // Whether the engine has meanwhile ended the transaction that this began in.
  bool LostTransaction() const;

 private:
  sqlite3* db_;
  bool within_;  // A transaction.
  Statement rollback_;
  Statement release_;
  int code_;
  bool open_ = false;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_SCOPES_H_
