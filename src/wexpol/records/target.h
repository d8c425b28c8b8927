// Where a value goes: a parameter of a statement, or a column of a row that a virtual table
// answers.

#ifndef WEXPOL_RECORDS_TARGET_H_
#define WEXPOL_RECORDS_TARGET_H_

#include "wexpol/records/statement.h"

namespace wexpol {

class Target {
 public:
  Target(Statement& statement, int index) : statement_(&statement), index_(index) {}
  explicit Target(sqlite3_context* column) : column_(column) {}

  void Null() { column_ ? sqlite3_result_null(column_) : statement_->BindNull(index_); }
  void Int(std::int32_t value) {
    column_ ? sqlite3_result_int(column_, value) : statement_->Bind(index_, value);
  }
  void Int64(std::int64_t value) {
    column_ ? sqlite3_result_int64(column_, value) : statement_->Bind(index_, value);
  }
  // Without a copy; a null pointer is NULL.
  void Text(const char* text) {
    column_ ? sqlite3_result_text(column_, text, -1, SQLITE_STATIC)
            : statement_->Bind(index_, text);
  }
  void Text(std::string_view text) {
    column_ ? sqlite3_result_text64(column_, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8)
            : statement_->Bind(index_, text);
  }
  void Text(const wchar_t* text);
  void Bytes(Blob bytes) {
    column_ ? sqlite3_result_blob64(column_, bytes.data, bytes.size, SQLITE_STATIC)
            : statement_->Bind(index_, bytes);
  }
  void CopyOf(std::string_view text) {
    column_
        ? sqlite3_result_text64(column_, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8)
        : statement_->BindCopy(index_, text);
  }
  void CopyOf(Blob bytes) {
    column_ ? sqlite3_result_blob64(column_, bytes.data, bytes.size, SQLITE_TRANSIENT)
            : statement_->BindCopy(index_, bytes);
  }

 private:
  sqlite3_context* column_ = nullptr;
  Statement* statement_ = nullptr;
  int index_ = 0;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_TARGET_H_
