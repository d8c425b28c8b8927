// Where a value goes: a parameter of a statement.

#ifndef WEXPOL_RECORDS_TARGET_H_
#define WEXPOL_RECORDS_TARGET_H_

#include "wexpol/records/statement.h"

namespace wexpol {

class Target {
 public:
  Target(Statement& statement, int index) : statement_(statement), index_(index) {}

  void Null() { statement_.BindNull(index_); }
  void Int(std::int32_t value) { statement_.Bind(index_, value); }
  void Int64(std::int64_t value) { statement_.Bind(index_, value); }
  // Without a copy; a null pointer is NULL.
  void Text(const char* text) { statement_.Bind(index_, text); }
  void Text(std::string_view text) { statement_.Bind(index_, text); }
  void Text(const wchar_t* text) { statement_.Bind(index_, text); }
  void Bytes(Blob bytes) { statement_.Bind(index_, bytes); }
  void CopyOf(std::string_view text) { statement_.BindCopy(index_, text); }
  void CopyOf(Blob bytes) { statement_.BindCopy(index_, bytes); }

 private:
  Statement& statement_;
  int index_;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_TARGET_H_
