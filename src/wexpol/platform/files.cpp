#include "wexpol/platform/files.h"

#include <cstring>

#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

#ifdef _WIN32
constexpr std::wstring_view kSeparators = L"\\";
constexpr char kUriStart[] = "file:///";  // before a drive
#else
constexpr std::wstring_view kSeparators = L"/\\";
constexpr char kUriStart[] = "file:";
#endif

}  // namespace

std::wstring FolderOf(std::wstring_view path) {
  const std::size_t at = path.find_last_of(kSeparators);
  return std::wstring(path.substr(0, at == path.npos ? 0 : at));
}

std::wstring FileNameOf(std::wstring_view path) {
  return std::wstring(path.substr(path.find_last_of(kSeparators) + 1));
}

std::wstring JoinPath(std::wstring_view folder, std::wstring_view name) {
  std::wstring joined(folder);
  joined += kSeparators[0];
  return joined += name;
}

std::wstring ReplaceFileName(std::wstring_view path, std::wstring_view name) {
  const std::size_t at = path.find_last_of(kSeparators);
  if (at == path.npos || at + 1 + name.size() >= kMaxPath) return {};
  return std::wstring(path.substr(0, at + 1)).append(name);
}

std::string FileUri(const std::wstring& path) {
  std::string uri = kUriStart;
  for (const char c : WideToUtf8(path)) {
    if (c == '\\' && kSeparators[0] == L'\\') {
      uri += '/';
    } else if (std::strchr("%?#", c)) {
      constexpr char kHex[] = "0123456789ABCDEF";
      uri += {'%', kHex[c / 16], kHex[c % 16]};
    } else {
      uri += c;
    }
  }
  return uri;
}

}  // namespace wexpol
