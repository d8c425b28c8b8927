#include "wexpol/platform/files.h"

#include <windows.h>
#include <lmcons.h>
#include <shlobj.h>

#include <iterator>

#include "wexpol/platform/win32/handle.h"

namespace wexpol {
namespace {

std::wstring InCommonData(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  if (::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path) !=
      S_OK) {
    return {};
  }
  return JoinPath(path, name);
}

}  // namespace

bool FileExists(const std::wstring& path) {
  WIN32_FIND_DATAW found;
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  const ScopedHandle owner(search == INVALID_HANDLE_VALUE ? nullptr : search,
                           {[](void* handle) { ::FindClose(handle); }});
  return owner != nullptr;
}

std::optional<std::uint64_t> FileSize(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
  return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

bool CopyFileOver(const std::wstring& from, const std::wstring& to) {
  return ::CopyFileW(from.c_str(), to.c_str(), FALSE) != 0;
}

bool MoveFileOver(const std::wstring& from, const std::wstring& to) {
  {
    const ScopedHandle file = Own(::CreateFileW(from.c_str(), GENERIC_WRITE, 0, nullptr,
                                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file || !::FlushFileBuffers(file.get())) return false;
  }
  return ::MoveFileExW(from.c_str(), to.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool RenameFile(const std::wstring& from, const std::wstring& to) {
  return ::MoveFileW(from.c_str(), to.c_str()) != 0;
}

bool RemoveFile(const std::wstring& path) { return ::DeleteFileW(path.c_str()) != 0; }

File OpenForAppend(const std::wstring& path) {
  std::FILE* file = nullptr;
  // N: a program started meanwhile must not inherit the file, or nobody could rename it.
  return File(::_wfopen_s(&file, path.c_str(), L"atN") == 0 ? file : nullptr);
}

std::wstring DataFolder() { return InCommonData(L"Corvane Agent"); }

std::wstring LogFolder() { return InCommonData(L"Corvane Agent Log"); }

std::wstring ExecutablePath() {
  wchar_t path[kMaxPath];
  // A longer path is cut, on old systems without a terminator.
  const DWORD length = ::GetModuleFileNameW(nullptr, path, kMaxPath);
  return std::wstring(path, length < kMaxPath ? length : kMaxPath - 1);
}

std::wstring CurrentUserName() {
  wchar_t name[UNLEN + 1];
  DWORD size = static_cast<DWORD>(std::size(name));
  return ::GetUserNameW(name, &size) ? std::wstring(name) : std::wstring();
}

}  // namespace wexpol
