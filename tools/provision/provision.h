// Makes the encrypted database file, which the library itself never does.

#ifndef WEXPOL_PROVISION_PROVISION_H_
#define WEXPOL_PROVISION_PROVISION_H_

#include <string>

struct sqlite3;

namespace wexpol {

// Makes the folder of a database for the system and administrators alone (on the host: for the user
// who makes it), and lets the users of the group `readers` read, when it names one. For the agent's
// own database its folder is taken over when it is there, and the log gets a folder of its own,
// which every user may write to; any other folder that is there keeps its rights. False, with the
// reason in `error`.
bool PrepareFolders(const std::wstring& database, const std::wstring& readers, std::string& error);

// Creates the database, with the rights of its folder, at `path` with all its tables, empty, in WAL
// mode: readers are not held up by a synchronisation. False, with the reason in `error` and no file
// left behind, when there already is a file or it cannot be made.
bool CreateDatabase(const std::wstring& path, std::string& error);

// Opens a file with the key of the database, for tools that look at it past the session; null when
// it cannot be opened. `flags` are those of sqlite3_open_v2. To be closed with sqlite3_close.
sqlite3* OpenKeyed(const std::wstring& path, int flags);

}  // namespace wexpol

#endif  // WEXPOL_PROVISION_PROVISION_H_
