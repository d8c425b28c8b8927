#include "wexpol/platform/system_info.h"

#include <windows.h>
#include <rpc.h>

#include <cstring>

#include "wexpol/platform/win32/system_library.h"

namespace wexpol {

std::optional<std::wstring> ComputerDnsHostName() {
  return AskWithGrowingBuffer(32, [](wchar_t* buffer, std::size_t* size) {
    auto length = static_cast<DWORD>(*size);
    const bool done = ::GetComputerNameExW(ComputerNameDnsHostname, buffer, &length) != 0;
    const DWORD error = ::GetLastError();
    *size = length;
    return done ? Asked::kOk : error == ERROR_MORE_DATA ? Asked::kTooSmall : Asked::kFailed;
  });
}

bool AllocateUuid(std::array<std::uint8_t, 16>* bytes) {
  struct {
    ULARGE_INTEGER time;
    ULONG range;
    ULONG sequence;
  } uuid = {};
  static_assert(sizeof uuid == 16);
  UCHAR seed[6] = {};
  const SystemLibrary ntdll(L"NTDLL.DLL");
  const auto allocate =
      ntdll.Find<LONG(NTAPI*)(ULARGE_INTEGER*, ULONG*, ULONG*, UCHAR*)>("ZwAllocateUuids");
  if (!allocate || allocate(&uuid.time, &uuid.range, &uuid.sequence, seed) < 0) return false;
  // Wine's call succeeds without allocating; an id of zeros would be the same everywhere.
  if (uuid.time.QuadPart == 0 && ::UuidCreate(reinterpret_cast<UUID*>(&uuid)) != RPC_S_OK) {
    return false;
  }
  std::memcpy(bytes->data(), &uuid, sizeof uuid);
  return true;
}

std::optional<WindowsVersion> QueryWindowsVersion() {
  OSVERSIONINFOEXW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  if (!::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version))) return std::nullopt;
  return WindowsVersion{version.dwMajorVersion, version.dwMinorVersion, version.wSuiteMask,
                        version.wProductType};
}

std::string SystemName() {
  // What GetVersionExW tells ends with the version that a program's manifest names.
  using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  const HMODULE library = ::GetModuleHandleW(L"ntdll.dll");
  const auto get = library ? reinterpret_cast<GetVersion>(reinterpret_cast<void*>(
                                 ::GetProcAddress(library, "RtlGetVersion")))
                           : nullptr;
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  if (!get || get(&version) != 0) return "Windows";
  return "Windows " + std::to_string(version.dwMajorVersion) + '.' +
         std::to_string(version.dwMinorVersion) + '.' + std::to_string(version.dwBuildNumber);
}

void SleepYield() { ::Sleep(0); }

}  // namespace wexpol
