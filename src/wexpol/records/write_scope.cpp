#include "wexpol/records/write_scope.h"

#include "wexpol/records/statement.h"

namespace wexpol {

WriteScope::WriteScope(sqlite3* db) {
  if (db && !sqlite3_get_autocommit(db)) return;
  const int code = Statement(db, "BEGIN IMMEDIATE").Step();
  if (code == SQLITE_DONE) {
    db_ = db;
  } else {
    code_ = code;
  }
}

WriteScope::~WriteScope() {
  if (db_) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
}

bool WriteScope::Commit() {
  if (!ok()) return false;
  if (db_ && !Statement(db_, "COMMIT").Done()) return false;
  db_ = nullptr;
  return true;
}

}  // namespace wexpol
