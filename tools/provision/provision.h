// Makes the encrypted database file, which the library itself never does.

#ifndef WEXPOL_PROVISION_PROVISION_H_
#define WEXPOL_PROVISION_PROVISION_H_

#include <string>

struct sqlite3;

namespace wexpol {

// Creates the database at `path` with all its tables, empty, in WAL mode: readers are not held up
// by a synchronisation. False, with the reason in `error` and no file left behind, when there
// already is a file or it cannot be made.
bool CreateDatabase(const std::wstring& path, std::string& error);

// Opens a file with the key of the database, for tools that look at it past the session; null when
// it cannot be opened. `flags` are those of sqlite3_open_v2. To be closed with sqlite3_close.
sqlite3* OpenKeyed(const std::wstring& path, int flags);

}  // namespace wexpol

#endif  // WEXPOL_PROVISION_PROVISION_H_
