#include "wexpol/platform/posix/machine.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "wexpol/platform/look_only.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

constexpr char kSharedFolder[] = "/dev/shm";

std::string g_redirected;

}  // namespace

void RedirectSharedObjects(const std::wstring& folder) { g_redirected = WideToUtf8(folder); }

// "Global\\Name" is a file "Global.Name".
std::string SharedFile(const std::wstring& name, const char* kind) {
  std::string file = WideToUtf8(name) + kind;
  for (char& c : file) {
    if (c == '\\' || c == '/') c = '.';
  }
  return (g_redirected.empty() ? kSharedFolder : g_redirected) + '/' + file;
}

FileDescriptor OpenShared(const std::string& file) {
  // Without O_CREAT first: systems refuse it for a file that belongs to another user.
  int fd = ::open(file.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
  if (fd < 0 && !OnlyLooks()) {
    fd = ::open(file.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_CREAT, 0666);
    if (fd >= 0) ::fchmod(fd, 0666);  // whatever the process's mask: every user may open it
  }
  return FileDescriptor(fd);
}

}  // namespace wexpol
