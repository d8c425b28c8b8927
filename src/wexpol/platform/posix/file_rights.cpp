#include "wexpol/platform/file_rights.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "wexpol/platform/files.h"
#include "wexpol/platform/posix/machine.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

constexpr mode_t kPrivateFolder = 0700;
// What is made inside belongs to the group, too: this is how a folder tells that it lets one in.
constexpr mode_t kReadersFolder = S_ISGID | 0750;
constexpr mode_t kEveryonesFolder = 0777;

bool MakeFolder(const std::wstring& folder, gid_t group, mode_t mode) {
  const std::string path = WideToUtf8(folder);
  std::error_code ignored;
  std::filesystem::create_directories(WideToUtf8(FolderOf(folder)), ignored);
  ::mkdir(path.c_str(), 0700);
  const FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!fd) return false;
  if (group != static_cast<gid_t>(-1) && ::fchown(fd.get(), static_cast<uid_t>(-1), group) != 0) {
    return false;
  }
  return ::fchmod(fd.get(), mode) == 0;
}

FileDescriptor CreateNew(const std::wstring& path) {
  return FileDescriptor(
      ::open(WideToUtf8(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
}

}  // namespace

mode_t ModeInside(const std::string& folder) {
  struct stat status = {};
  const bool known = ::stat(folder.empty() ? "." : folder.c_str(), &status) == 0;
  return known && (status.st_mode & kReadersFolder) == kReadersFolder ? kReadersFolder
                                                                      : kPrivateFolder;
}

bool MakePrivateFolder(const std::wstring& folder, const std::wstring& readers) {
  if (readers.empty()) return MakeFolder(folder, static_cast<gid_t>(-1), kPrivateFolder);
  const group* found = ::getgrnam(WideToUtf8(readers).c_str());
  return found && MakeFolder(folder, found->gr_gid, kReadersFolder);
}

bool MakeLogFolder(const std::wstring& folder) {
  return MakeFolder(folder, static_cast<gid_t>(-1), kEveryonesFolder);
}

bool MakeOwnFile(const std::wstring& path) { return static_cast<bool>(CreateNew(path)); }

bool MakePrivateFile(const std::wstring& path) {
  const FileDescriptor fd = CreateNew(path);
  return fd && ::fchmod(fd.get(), ModeInside(WideToUtf8(FolderOf(path))) & 0666) == 0;
}

bool TakeRights(const std::wstring& from, const std::wstring& to) {
  struct stat status;
  const std::string target = WideToUtf8(to);
  if (::stat(WideToUtf8(from).c_str(), &status) != 0) return false;
  return ::chown(target.c_str(), status.st_uid, status.st_gid) == 0 &&
         ::chmod(target.c_str(), status.st_mode & 07777) == 0;
}

}  // namespace wexpol
