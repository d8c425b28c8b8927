// A file of the engine, opened with the key of the database.

#ifndef WEXPOL_POLICYDB_ENCRYPTED_FILE_H_
#define WEXPOL_POLICYDB_ENCRYPTED_FILE_H_

#include <sqlite3.h>

#include <memory>
#include <string>

namespace wexpol {

struct EngineCloser {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};
using EngineHandle = std::unique_ptr<sqlite3, EngineCloser>;

// Both answer the engine's code; `opened` is set only on SQLITE_OK. What the file holds is not yet
// looked at.
[[nodiscard]] int OpenEncrypted(const std::string& utf8_path, int flags, EngineHandle* opened);

// To look at a file and leave nothing behind: no byte of it changes. A file on its own, without the
// engine's files beside it, is taken as one that nobody writes to, and gets none; else other
// processes may go on writing.
[[nodiscard]] int OpenUntouched(const std::wstring& path, EngineHandle* opened);

// Whether the whole file can be decrypted and is well formed; reads all of it.
[[nodiscard]] bool IsSound(sqlite3* db);

// The write-ahead log and its index stay beside the file, the log empty, when the last connection
// closes: a process that may only read the folder can then open the file.
void KeepSideFiles(sqlite3* db);

// The endings of the files that the engine keeps beside a database.
inline constexpr const wchar_t* kSideFiles[] = {L"-journal", L"-wal", L"-shm"};

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_ENCRYPTED_FILE_H_
