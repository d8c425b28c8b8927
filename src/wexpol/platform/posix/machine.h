// What the files of the host's port share.

#ifndef WEXPOL_PLATFORM_POSIX_MACHINE_H_
#define WEXPOL_PLATFORM_POSIX_MACHINE_H_

#include <sys/types.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace wexpol {

// Where the agent keeps its data on the host.
constexpr char kDataFolder[] = "/var/lib/Corvane Agent";
constexpr char kLogFolder[] = "/var/log/Corvane Agent";

// The mode of a folder made in `folder`, and, without the bits to enter, of a file: the owner's
// alone, and its group's to read where the folder lets a group in.
mode_t ModeInside(const std::string& folder);

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~FileDescriptor() {
    if (fd_ >= 0) ::close(fd_);
  }

  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }

 private:
  int fd_ = -1;
};

// The file behind a shared object, and that file opened, or created for every user.
std::string SharedFile(const std::wstring& name, const char* kind);
FileDescriptor OpenShared(const std::string& file);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_POSIX_MACHINE_H_
