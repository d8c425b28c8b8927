// The text that a failed operation leaves for the console.

#ifndef WEXPOL_RECORDS_ERROR_OBJECT_H_
#define WEXPOL_RECORDS_ERROR_OBJECT_H_

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace wexpol {

inline constexpr char kJsonError[] = "Error parsing json";
inline constexpr int kNoCode = -1;

// {"code": 19,"desc": "UNIQUE constraint failed: accounts.id"}; kNoCode leaves "code" out.
std::string ErrorObject(int code, std::string_view message);

// The same with the engine's text for its last failure on `db`, which may be null.
std::string EngineErrorObject(sqlite3* db, int code);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_ERROR_OBJECT_H_
