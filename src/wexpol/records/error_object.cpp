#include "wexpol/records/error_object.h"

#include "wexpol/records/codec.h"

namespace wexpol {

std::string ErrorObject(int code, std::string_view message) {
  std::string object = "{";
  if (code != kNoCode) object.append("\"code\": ").append(std::to_string(code)).append(",");
  object.append("\"desc\": ");
  AppendJsonString(message, object);
  object.append("}");
  return object;
}

std::string EngineErrorObject(sqlite3* db, int code) {
  return ErrorObject(code, db ? sqlite3_errmsg(db) : sqlite3_errstr(code));
}

}  // namespace wexpol
