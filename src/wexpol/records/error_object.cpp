#include "wexpol/records/error_object.h"

#include "wexpol/records/json_text.h"

namespace wexpol {

std::string ErrorObject(int code, std::string_view message) {
  std::string object = "{";
  if (code != kNoCode) object.append("\"code\": ").append(std::to_string(code)).append(",");
  object.append("\"desc\": ");
  AppendJsonString(message, object);
  object.append("}");
  return object;
}

// A statement that was put back has made the engine forget why a value could not be bound.
std::string EngineMessage(sqlite3* db, int code) {
  return db && sqlite3_errcode(db) == code ? sqlite3_errmsg(db) : sqlite3_errstr(code);
}

std::string FailureObject(sqlite3* db, int code, std::string_view json_error) {
  if (code == kNoCode) return ErrorObject(code, json_error);
  return ErrorObject(code, EngineMessage(db, code));
}

void TellOutOfMemory(std::string& error) noexcept {
  try {
    error = ErrorObject(SQLITE_NOMEM, sqlite3_errstr(SQLITE_NOMEM));
  } catch (...) {
    error = R"({"code": 7})";  // As long as a string holds in itself.
  }
}

}  // namespace wexpol
