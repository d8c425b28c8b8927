#include "wexpol/platform/file_users.h"

#include <windows.h>
#include <winternl.h>

#include <cstddef>

#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/win32/handle.h"

namespace wexpol {
namespace {

// Asked of a file, the ids of the processes that use it. Declared by no kit.
constexpr int kProcessIdsUsingFile = 47;
struct ProcessIds {
  ULONG count;
  ULONG_PTR ids[1];
};

std::string ProgramOf(DWORD process) {
  const ScopedHandle handle = Own(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
  wchar_t path[kMaxPath];
  DWORD size = kMaxPath;
  if (!handle || !::QueryFullProcessImageNameW(handle.get(), 0, path, &size)) return {};
  return WideToUtf8(FileNameOf({path, size}));
}

}  // namespace

std::optional<std::vector<FileUser>> UsersOfFile(const std::wstring& path) {
  using Query = NTSTATUS(NTAPI*)(HANDLE, IO_STATUS_BLOCK*, void*, ULONG, int);
  const HMODULE library = ::GetModuleHandleW(L"ntdll.dll");
  const auto query = library ? reinterpret_cast<Query>(reinterpret_cast<void*>(
                                   ::GetProcAddress(library, "NtQueryInformationFile")))
                             : nullptr;
  // Only its attributes: that keeps nobody from opening or removing it.
  const ScopedHandle file = Own(::CreateFileW(
      path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, 0, nullptr));
  std::vector<ULONG_PTR> buffer(1024);
  IO_STATUS_BLOCK status = {};
  const auto size = static_cast<ULONG>(buffer.size() * sizeof buffer[0]);
  if (!query || !file ||
      query(file.get(), &status, buffer.data(), size, kProcessIdsUsingFile) != 0) {
    return std::nullopt;
  }
  const auto* found = reinterpret_cast<const ProcessIds*>(buffer.data());
  std::vector<FileUser> users;
  for (ULONG i = 0; i < found->count; ++i) {
    const auto process = static_cast<DWORD>(found->ids[i]);
    if (process != ::GetCurrentProcessId()) users.push_back({process, ProgramOf(process)});
  }
  return users;
}

}  // namespace wexpol
