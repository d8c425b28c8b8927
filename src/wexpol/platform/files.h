// Files by their wide path, and the program and user that this process is.

#ifndef WEXPOL_PLATFORM_FILES_H_
#define WEXPOL_PLATFORM_FILES_H_

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace wexpol {

// The system's limit of a path that the library builds, terminator included.
constexpr std::size_t kMaxPath = 260;

// Pure functions of a path. The last separator divides it: a backslash, or a slash on the host.
std::wstring FolderOf(std::wstring_view path);  // without the separator; empty when there is none
std::wstring FileNameOf(std::wstring_view path);
std::wstring JoinPath(std::wstring_view folder, std::wstring_view name);
// `path` with another file name; empty without a separator or when it does not fit kMaxPath.
std::wstring ReplaceFileName(std::wstring_view path, std::wstring_view name);

// The address of a file, "file:...", with what an address gives a meaning of its own in %XX.
std::string FileUri(const std::wstring& path);

// Whether something has this name: a file, a folder, or for a pattern of * and ? anything it fits.
bool FileExists(const std::wstring& path);
// Nothing for what is missing or cannot be asked.
std::optional<std::uint64_t> FileSize(const std::wstring& path);
// Replaces what `to` holds; one that is there keeps its rights. False after a failure, which may
// leave `to` cut.
bool CopyFileOver(const std::wstring& from, const std::wstring& to);
// Puts a file in the place of another, or of none, in one step. What it holds is on the disk first.
[[nodiscard]] bool MoveFileOver(const std::wstring& from, const std::wstring& to);
// False when `to` exists.
bool RenameFile(const std::wstring& from, const std::wstring& to);
bool RemoveFile(const std::wstring& path);

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// A text file, created when missing for every user to write; line ends are those of the system.
// Null after a failure, and for what is a link or no file at all: others may make those.
File OpenForAppend(const std::wstring& path);

// The agent's folder below the machine's common application data, and the one of its log, which has
// rights of its own; empty when there is none.
std::wstring DataFolder();
std::wstring LogFolder();
// The running program's full path, cut where kMaxPath ends.
std::wstring ExecutablePath();
// The account that the process runs as; empty when it is not known.
std::wstring CurrentUserName();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_FILES_H_
