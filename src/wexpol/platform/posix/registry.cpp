// The host's registry: a key is a folder, a value a file in it that is replaced as a whole, so any
// number of processes may use it at once.

#include "wexpol/platform/registry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cwctype>
#include <filesystem>
#include <utility>

#include "wexpol/platform/look_only.h"
#include "wexpol/platform/posix/machine.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"

using wexpol::RegistryAccess;
using wexpol::RegistryStatus;
using wexpol::RegistryType;
using wexpol::RegistryView;

namespace wexpol {
namespace {

std::string g_redirected;

struct OpenKey {
  std::string folder;
  bool writable;
};

// Appends the file name of a key or value: lower case, since names ignore case, and without a dot
// or a slash, so that ".value" tells values from keys and no name leaves its folder.
void AppendEncoded(std::wstring_view name, std::string* path) {
  for (const wchar_t given : name) {
    const auto c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(given)));
    if (c == L'.' || c == L'/' || c == L'%' || c == L'\0') {
      constexpr char kHex[] = "0123456789abcdef";
      *path += {'%', kHex[c / 16], kHex[c % 16]};
    } else if (c < 0x80) {
      *path += static_cast<char>(c);
    } else {
      *path += WideToUtf8({&c, 1});
    }
  }
}

constexpr char kValueSuffix[] = ".value";
constexpr char kKeyNameFile[] = "/.name.value";  // the key's name as it was given

std::string ValueFile(const OpenKey& key, const wchar_t* name) {
  std::string file = key.folder + '/';
  AppendEncoded(name, &file);
  return file += kValueSuffix;
}

// The text between backslashes, from `*at` on, skipping empty pieces; empty at the end.
std::wstring_view NextName(std::wstring_view path, std::size_t* at) {
  const std::size_t begin = path.find_first_not_of(L'\\', *at);
  if (begin == path.npos) return {};
  *at = std::min(path.find(L'\\', begin), path.size());
  return path.substr(begin, *at - begin);
}

std::string ViewFolder(RegistryView view) {
  const std::string root =
      g_redirected.empty() ? std::string(kDataFolder) + "/registry" : g_redirected;
  return root + (view == RegistryView::k32Bit ? "/32" : "/64");
}

bool ReadStored(const std::string& file, RegistryType* type, void* data, std::size_t capacity,
                std::size_t* size) {
  const FileDescriptor fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return false;
  std::uint32_t stored_type;
  char beyond;  // filled when the value is larger
  const iovec parts[] = {{&stored_type, sizeof stored_type}, {data, capacity}, {&beyond, 1}};
  const ssize_t got = ::readv(fd.get(), parts, 3);
  if (got < static_cast<ssize_t>(sizeof stored_type)) return false;
  const std::size_t stored_size = static_cast<std::size_t>(got) - sizeof stored_type;
  if (stored_size > capacity) return false;
  *type = static_cast<RegistryType>(stored_type);
  *size = stored_size;
  return true;
}

mode_t ModeOfFile(const std::string& file) {
  return ModeInside(file.substr(0, file.rfind('/'))) & 0666;
}

// kOk for one that is there, which keeps its rights; kNotFound for one that was made now.
RegistryStatus MakeFolder(const std::string& folder) {
  if (::mkdir(folder.c_str(), 0700) != 0) {
    return errno == EEXIST ? RegistryStatus::kOk : RegistryStatus::kFailed;
  }
  const mode_t mode = ModeInside(folder.substr(0, folder.rfind('/')));
  return ::chmod(folder.c_str(), mode) == 0 ? RegistryStatus::kNotFound : RegistryStatus::kFailed;
}

bool WriteStored(const std::string& file, RegistryType type, const void* data, std::size_t size) {
  std::string fresh = file + ".XXXXXX";
  const FileDescriptor fd(::mkstemp(fresh.data()));
  if (!fd) return false;
  const iovec parts[] = {{&type, sizeof type}, {const_cast<void*>(data), size}};
  const bool written = ::writev(fd.get(), parts, 2) == static_cast<ssize_t>(sizeof type + size) &&
                       ::fchmod(fd.get(), ModeOfFile(file)) == 0 &&
                       ::rename(fresh.c_str(), file.c_str()) == 0;
  if (!written) ::unlink(fresh.c_str());
  return written;
}

RegistryStatus StatusOfErrno() {
  return errno == ENOENT || errno == ENOTDIR ? RegistryStatus::kNotFound : RegistryStatus::kFailed;
}

}  // namespace

void RedirectRegistry(const std::wstring& folder) {
  g_redirected = folder.empty() ? "" : WideToUtf8(folder) + "/registry";
}

void DeleteRedirectedRegistry() {
  std::error_code ignored;
  if (!g_redirected.empty()) std::filesystem::remove_all(g_redirected, ignored);
}

}  // namespace wexpol

RegistryStatus CRegistryVeyra::Open(const std::wstring& path, RegistryAccess access,
                                    RegistryView view) {
  Close();
  if (path.empty()) return RegistryStatus::kFailed;
  std::string folder = wexpol::ViewFolder(view);
  std::size_t at = 0;
  for (std::wstring_view name; !(name = wexpol::NextName(path, &at)).empty();) {
    wexpol::AppendEncoded(name, &(folder += '/'));
  }
  const bool writable = !wexpol::OnlyLooks() &&
                        (access == RegistryAccess::kReadWrite || access == RegistryAccess::kFull);
  if (::access(folder.c_str(), writable ? W_OK : R_OK) != 0) return wexpol::StatusOfErrno();
  key_ = {new wexpol::OpenKey{std::move(folder), writable},
          {[](void* key) { delete static_cast<wexpol::OpenKey*>(key); }}};
  return RegistryStatus::kOk;
}

RegistryStatus CRegistryVeyra::Create(const std::wstring& path, RegistryAccess access,
                                      RegistryView view) {
  if (wexpol::OnlyLooks()) return Open(path, access, view);
  Close();
  std::string folder = wexpol::ViewFolder(view);
  const std::size_t view_at = folder.rfind('/'), root_at = folder.rfind('/', view_at - 1);
  for (const std::size_t end : {root_at, view_at, folder.size()}) {
    if (wexpol::MakeFolder(folder.substr(0, end)) == RegistryStatus::kFailed) {
      return RegistryStatus::kFailed;
    }
  }
  std::size_t at = 0;
  for (std::wstring_view name; !(name = wexpol::NextName(path, &at)).empty();) {
    wexpol::AppendEncoded(name, &(folder += '/'));
    const RegistryStatus made = wexpol::MakeFolder(folder);
    if (made == RegistryStatus::kFailed) return made;
    if (made == RegistryStatus::kNotFound) {
      wexpol::WriteStored(folder + wexpol::kKeyNameFile, RegistryType::kString, name.data(),
                          name.size() * sizeof(wchar_t));
    }
  }
  return Open(path, access, view);
}

bool CRegistryVeyra::QueryValue(const wchar_t* name, RegistryType* type, void* data,
                                std::size_t capacity, std::size_t* size) const {
  const auto* key = static_cast<const wexpol::OpenKey*>(key_.get());
  return key && wexpol::ReadStored(wexpol::ValueFile(*key, name), type, data, capacity, size);
}

bool CRegistryVeyra::SetValue(const wchar_t* name, RegistryType type, const void* data,
                              std::size_t size) {
  const auto* key = static_cast<const wexpol::OpenKey*>(key_.get());
  return key && key->writable &&
         wexpol::WriteStored(wexpol::ValueFile(*key, name), type, data, size);
}

bool CRegistryVeyra::DeleteValue(const wchar_t* name) {
  const auto* key = static_cast<const wexpol::OpenKey*>(key_.get());
  return key && key->writable && ::unlink(wexpol::ValueFile(*key, name).c_str()) == 0;
}

std::vector<std::wstring> CRegistryVeyra::SubkeyNames() const {
  std::vector<std::wstring> names;
  const auto* key = static_cast<const wexpol::OpenKey*>(key_.get());
  if (!key) return names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(key->folder, error), end; !error && entry != end;
       entry.increment(error)) {
    wchar_t name[256];
    RegistryType type;
    std::size_t size;
    if (wexpol::ReadStored(entry->path().string() + wexpol::kKeyNameFile, &type, name, sizeof name,
                           &size)) {
      names.emplace_back(name, size / sizeof(wchar_t));
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}
