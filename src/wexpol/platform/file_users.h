// Who has a file open.

#ifndef WEXPOL_PLATFORM_FILE_USERS_H_
#define WEXPOL_PLATFORM_FILE_USERS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wexpol {

struct FileUser {
  std::uint32_t process;
  std::string program;  // Empty when that is not told.
};

// The other processes that have a file open, as far as this user may know; nothing when the system
// does not tell. Keeps nobody from the file.
std::optional<std::vector<FileUser>> UsersOfFile(const std::wstring& path);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_FILE_USERS_H_
