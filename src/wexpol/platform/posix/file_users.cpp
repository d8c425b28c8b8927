#include "wexpol/platform/file_users.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

namespace fs = std::filesystem;

// The entries of a folder; none when it cannot be read.
std::vector<fs::path> EntriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    entries.push_back(entry->path());
  }
  return entries;
}

bool HasOpen(const fs::path& process, const struct stat& file) {
  const std::vector<fs::path> open = EntriesOf(process / "fd");
  return std::any_of(open.begin(), open.end(), [&](const fs::path& descriptor) {
    struct stat status;
    return ::stat(descriptor.c_str(), &status) == 0 && status.st_dev == file.st_dev &&
           status.st_ino == file.st_ino;
  });
}

}  // namespace

std::optional<std::vector<FileUser>> UsersOfFile(const std::wstring& path) {
  struct stat file;
  if (::stat(WideToUtf8(path).c_str(), &file) != 0) return std::nullopt;
  std::vector<FileUser> users;
  for (const fs::path& process : EntriesOf("/proc")) {
    const std::string name = process.filename();
    std::uint32_t id = 0;
    if (std::from_chars(name.data(), name.data() + name.size(), id).ec != std::errc() ||
        id == static_cast<std::uint32_t>(::getpid()) || !HasOpen(process, file)) {
      continue;
    }
    std::string program;
    std::ifstream stream(process / "comm");
    std::getline(stream, program);
    users.push_back({id, program});
  }
  return users;
}

}  // namespace wexpol
