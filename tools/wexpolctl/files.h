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
// Puts a closed database with its side files in the place of another, which goes to `aside`, or of
// none. False, and all as it was, when one of them cannot be renamed.
bool ReplaceDatabase(const std::wstring& fresh, const std::wstring& database,
                     const std::wstring& aside);
// `path`, or with the first number at its end that gives a name for a database that is free.
std::wstring UnusedName(const std::wstring& path);

// A database that is made under another name than its own; gone with its side files at the end,
// unless it was renamed.
class TemporaryDatabase {
 public:
  explicit TemporaryDatabase(std::wstring path);
  ~TemporaryDatabase() { Remove(); }
  TemporaryDatabase(const TemporaryDatabase&) = delete;
  TemporaryDatabase& operator=(const TemporaryDatabase&) = delete;

  const std::wstring& path() const { return path_; }

 private:
  void Remove();

  std::wstring path_;
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_FILES_H_
