// The host's named block: whoever can lock its file alone is the first or the last one there.

#include "wexpol/platform/shared_memory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "wexpol/platform/look_only.h"
#include "wexpol/platform/posix/machine.h"

namespace wexpol {
namespace {

struct SharedBlock {
  std::string file;
  FileDescriptor fd;
  void* view;
  std::size_t size;
};

// The last holder takes the file away.
void LetGo(void* held) {
  const auto* block = static_cast<const SharedBlock*>(held);
  ::munmap(block->view, block->size);
  if (::flock(block->fd.get(), LOCK_EX | LOCK_NB) == 0) ::unlink(block->file.c_str());
  delete block;
}

// Locks `fd` for sharing, and makes a fresh block of it when nobody else holds it. False when the
// file has lost its name or its size does not do.
bool Join(int fd, std::size_t size, bool* created) {
  *created = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
  if (*created && (OnlyLooks() || ::ftruncate(fd, 0) != 0 ||
                   // Reserved, not only promised: on a full disk a promise would kill who writes.
                   ::posix_fallocate(fd, 0, static_cast<off_t>(size)) != 0)) {
    return false;
  }
  return ::flock(fd, LOCK_SH) == 0;
}

}  // namespace

NamedMapping::NamedMapping(const std::wstring& name, std::size_t size) {
  std::string file = SharedFile(name, ".block");
  struct stat status = {};
  FileDescriptor fd;
  do {
    fd = OpenShared(file);
    if (!fd || !Join(fd.get(), size, &created_) || ::fstat(fd.get(), &status) != 0) return;
  } while (status.st_nlink == 0);  // the last holder removed it meanwhile
  if (status.st_size < static_cast<off_t>(size)) return;

  void* view = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd.get(), 0);
  if (view == MAP_FAILED) return;
  data_ = view;
  block_ = {new SharedBlock{std::move(file), std::move(fd), view, size}, {&LetGo}};
}

}  // namespace wexpol
