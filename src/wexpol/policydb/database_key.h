// The key of the database file.

#ifndef WEXPOL_POLICYDB_DATABASE_KEY_H_
#define WEXPOL_POLICYDB_DATABASE_KEY_H_

struct sqlite3;

namespace wexpol {

// Gives the engine the key of a file that was just opened. A wrong key only shows when the first
// statement fails. Never exported: whoever needs it is linked with the library.
void ApplyDatabaseKey(sqlite3* db);

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_DATABASE_KEY_H_
