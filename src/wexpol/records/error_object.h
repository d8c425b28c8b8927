// The text that a failed operation leaves for the console.

#ifndef WEXPOL_RECORDS_ERROR_OBJECT_H_
#define WEXPOL_RECORDS_ERROR_OBJECT_H_

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace wexpol {

inline constexpr char kJsonError[] = "Error parsing json";
inline constexpr char kObjectJsonError[] = "json parsing error";  // Where one object is expected.
inline constexpr int kNoCode = -1;

// {"code": 19,"desc": "UNIQUE constraint failed: accounts.id"}; kNoCode leaves "code" out.
std::string ErrorObject(int code, std::string_view message);

// The engine's text for its last failure on `db`, which may be null; for another failure than its
// last one, what the code says by itself.
std::string EngineMessage(sqlite3* db, int code);

// The error object of the engine's failure, or, for kNoCode, of a fault of the document.
std::string FailureObject(sqlite3* db, int code, std::string_view json_error = kJsonError);

// The error object of a denied allocation, which itself may go without memory.
void TellOutOfMemory(std::string& error) noexcept;

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_ERROR_OBJECT_H_
