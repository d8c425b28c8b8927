#include "wexpol/platform/files.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "wexpol/platform/posix/machine.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

// Whether a folder holds a name that the pattern fits; like the system's search, it also sees the
// folder itself and its parent.
bool AnyMatches(const std::wstring& path) {
  std::string pattern;
  for (const char c : WideToUtf8(FileNameOf(path))) {
    pattern += c == '[' ? "[[]" : std::string(1, c);
  }
  const auto fits = [&pattern](const std::string& name) {
    return ::fnmatch(pattern.c_str(), name.c_str(), FNM_NOESCAPE) == 0;
  };
  const std::string folder = WideToUtf8(path.substr(0, path.size() - FileNameOf(path).size()));
  std::error_code error;
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
  if (error) return false;
  if (fits(".") || fits("..")) return true;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (fits(entry->path().filename().string())) return true;
  }
  return false;
}

}  // namespace

bool FileExists(const std::wstring& path) {
  if (path.find_first_of(L"*?") != path.npos) return AnyMatches(path);
  return ::access(WideToUtf8(path).c_str(), F_OK) == 0;
}

std::optional<std::uint64_t> FileSize(const std::wstring& path) {
  struct stat status;
  if (::stat(WideToUtf8(path).c_str(), &status) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

bool CopyFileOver(const std::wstring& from, const std::wstring& to) {
  struct stat before;
  const std::string target = WideToUtf8(to);
  const bool existed = ::stat(target.c_str(), &before) == 0;
  std::error_code error;
  const bool copied = std::filesystem::copy_file(
      WideToUtf8(from), target, std::filesystem::copy_options::overwrite_existing, error);
  // The copy has taken the mode of its source.
  return copied && (!existed || ::chmod(target.c_str(), before.st_mode & 07777) == 0);
}

bool MoveFileOver(const std::wstring& from, const std::wstring& to) {
  const std::string name = WideToUtf8(from);
  const FileDescriptor fd(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
  return fd && ::fsync(fd.get()) == 0 && ::rename(name.c_str(), WideToUtf8(to).c_str()) == 0;
}

bool RenameFile(const std::wstring& from, const std::wstring& to) {
  return !FileExists(to) && ::rename(WideToUtf8(from).c_str(), WideToUtf8(to).c_str()) == 0;
}

bool RemoveFile(const std::wstring& path) { return ::unlink(WideToUtf8(path).c_str()) == 0; }

File OpenForAppend(const std::wstring& path) {
  const std::string name = WideToUtf8(path);
  // O_NONBLOCK: a pipe of that name must not hold the process up.
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  int fd = ::open(name.c_str(), kFlags);
  if (fd < 0 && (fd = ::open(name.c_str(), kFlags | O_CREAT | O_EXCL, 0666)) >= 0) {
    ::fchmod(fd, 0666);  // whatever the process's mask
  }
  struct stat status = {};
  if (fd >= 0 && ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1) {
    if (std::FILE* file = ::fdopen(fd, "a")) return File(file);
  }
  if (fd >= 0) ::close(fd);
  return nullptr;
}

std::wstring DataFolder() { return Utf8ToWide(kDataFolder); }

std::wstring LogFolder() { return Utf8ToWide(kLogFolder); }

std::wstring ExecutablePath() {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
  return Utf8ToWide(path.string()).substr(0, kMaxPath - 1);
}

std::wstring CurrentUserName() {
  char buffer[1024];
  passwd entry;
  passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, buffer, sizeof buffer, &found) != 0 || !found) return {};
  return Utf8ToWide(found->pw_name);
}

}  // namespace wexpol
