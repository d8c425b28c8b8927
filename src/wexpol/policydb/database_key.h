// The key of the database file.

#ifndef WEXPOL_POLICYDB_DATABASE_KEY_H_
#define WEXPOL_POLICYDB_DATABASE_KEY_H_

#include <array>

struct sqlite3;

namespace wexpol {

// Gives the engine the key of a file that was just opened and answers its code. After anything but
// SQLITE_OK the connection must be closed: it would take the file for one in clear text, or make it
// one. A wrong key only shows when the first statement fails. Never exported: whoever needs it is
// linked with the library.
[[nodiscard]] int ApplyDatabaseKey(sqlite3* db);

// The bytes, put together at run time; to be wiped by who asked for them.
std::array<unsigned char, 8> DatabaseKey();

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_DATABASE_KEY_H_
