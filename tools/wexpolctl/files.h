// Files as the tool handles them: by the wide paths of the library.

#ifndef WEXPOL_WEXPOLCTL_FILES_H_
#define WEXPOL_WEXPOLCTL_FILES_H_

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace wexpolctl {

std::filesystem::path ToPath(const std::wstring& path);
std::wstring FromPath(const std::filesystem::path& path);
// In full, without a separator at its end.
std::wstring AbsolutePath(const std::string& utf8);

// "wexpol.bak" for "wexpol.db": where the backup of a database lies.
std::wstring BackupPathOf(const std::wstring& database);

// Seconds since a file was written; nothing when that cannot be asked.
std::optional<std::int64_t> AgeOf(const std::wstring& path);

// The whole file; nothing when it cannot be read.
std::optional<std::string> ReadFile(const std::wstring& path);
bool WriteFile(const std::wstring& path, const std::string& text);

// The engine's files beside a database: "-wal", "-shm", "-journal".
void RemoveSideFiles(const std::wstring& database);
// Renames a closed database with its side files, over what has the new name. False, and nothing
// changed, when the database itself cannot be renamed.
bool MoveDatabase(const std::wstring& from, const std::wstring& to);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_FILES_H_
