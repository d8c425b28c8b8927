#include "wexpol/webfilter/filter_url_document.h"

#include "wexpol/records/synchronise.h"
#include "wexpol/webfilter/filter_url.h"

namespace wexpol {

bool AddFilterUrl(sqlite3* db, CFilterUrl* url, const char* json, std::string& error) {
  const int code = AddObject(
      db, url, json, [url](const rapidjson::Value& value) { return url->ParseJson(value); });
  if (code == kNoCode) {
    error = ErrorObject(code, kObjectJsonError);
  } else if (code != SQLITE_DONE) {
    error = "SQLite error: " + std::to_string(code) + " : " + EngineMessage(db, code);
  }
  return code == SQLITE_DONE;
}

}  // namespace wexpol
