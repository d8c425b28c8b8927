// The host's named mutex is a lock on a file in shared memory: the kernel releases it with its
// owner.

#include "wexpol/platform/named_mutex.h"

#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "wexpol/platform/posix/machine.h"

namespace wexpol {

NamedMutex::NamedMutex(const std::wstring& name) {
  if (FileDescriptor fd = OpenShared(SharedFile(name, ".lock"))) {
    handle_ = {new FileDescriptor(std::move(fd)),
               {[](void* handle) { delete static_cast<FileDescriptor*>(handle); }}};
  }
}

NamedMutex::WaitResult NamedMutex::Wait(std::uint32_t timeout_ms) {
  if (!handle_) return WaitResult::kFailed;
  const int fd = static_cast<FileDescriptor*>(handle_.get())->get();
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return WaitResult::kFailed;
    if (std::chrono::steady_clock::now() >= end) return WaitResult::kTimeout;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  owned_ = true;
  return WaitResult::kObtained;
}

void NamedMutex::Release() {
  if (owned_) ::flock(static_cast<FileDescriptor*>(handle_.get())->get(), LOCK_UN);
  owned_ = false;
}

}  // namespace wexpol
