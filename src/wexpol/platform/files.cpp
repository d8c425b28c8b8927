#include "wexpol/platform/files.h"

namespace wexpol {
namespace {

#ifdef _WIN32
constexpr std::wstring_view kSeparators = L"\\";
#else
constexpr std::wstring_view kSeparators = L"/\\";
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

}  // namespace wexpol
