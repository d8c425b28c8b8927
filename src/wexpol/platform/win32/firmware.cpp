#include "wexpol/platform/firmware.h"

#include <windows.h>
#include <winternl.h>

#include "wexpol/platform/win32/handle.h"
#include "wexpol/platform/win32/system_library.h"

namespace wexpol {
namespace {

constexpr DWORD kSmbiosProvider = 0x52534D42;  // "RSMB"

Bytes AskSystem(UINT(WINAPI* get_table)(DWORD, DWORD, void*, DWORD)) {
  Bytes answer(get_table(kSmbiosProvider, 0, nullptr, 0));
  const UINT size = get_table(kSmbiosProvider, 0, answer.data(), static_cast<DWORD>(answer.size()));
  if (size > answer.size()) return {};
  answer.resize(size);
  return TableInSystemAnswer(answer);
}

// The native calls by which systems without a firmware table function show physical memory.
class PhysicalMemory {
 public:
  PhysicalMemory() {
    if (!init_string_ || !query_ || !open_ || !map_ || !unmap_) return;
    SYSTEM_BASIC_INFORMATION system;
    if (query_(SystemBasicInformation, &system, sizeof system, nullptr) < 0) return;
    granularity_ = system.AllocationGranularity;
    UNICODE_STRING name;
    init_string_(&name, L"\\device\\physicalmemory");
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE, nullptr, nullptr);
    HANDLE section = nullptr;
    if (open_(&section, SECTION_MAP_READ, &attributes) >= 0) section_ = Own(section);
  }

  Bytes Read(std::uint32_t address, std::size_t size) const {
    if (!section_ || granularity_ == 0) return {};
    const std::size_t before = address % granularity_;
    LARGE_INTEGER offset;
    offset.QuadPart = address - before;
    SIZE_T view_size = before + size;
    void* view = nullptr;
    constexpr int kViewShare = 1;
    const HANDLE this_process = ::GetCurrentProcess();
    if (map_(section_.get(), this_process, &view, 0, view_size, &offset, &view_size, kViewShare, 0,
             PAGE_READONLY) < 0) {
      return {};
    }
    const auto* first = static_cast<const std::uint8_t*>(view) + before;
    Bytes bytes;
    if (view_size >= before + size) bytes.assign(first, first + size);
    unmap_(this_process, view);
    return bytes;
  }

 private:
  SystemLibrary ntdll_{L"NTDLL.DLL"};
  void(NTAPI* init_string_)(UNICODE_STRING*, const wchar_t*) =
      ntdll_.Find<decltype(init_string_)>("RtlInitUnicodeString");
  NTSTATUS(NTAPI* query_)
  (SYSTEM_INFORMATION_CLASS, void*, ULONG,
   ULONG*) = ntdll_.Find<decltype(query_)>("ZwQuerySystemInformation");
  NTSTATUS(NTAPI* open_)
  (HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*) = ntdll_.Find<decltype(open_)>("ZwOpenSection");
  NTSTATUS(NTAPI* map_)
  (HANDLE, HANDLE, void**, ULONG_PTR, SIZE_T, LARGE_INTEGER*, SIZE_T*, int, ULONG,
   ULONG) = ntdll_.Find<decltype(map_)>("ZwMapViewOfSection");
  NTSTATUS(NTAPI* unmap_)(HANDLE, void*) = ntdll_.Find<decltype(unmap_)>("ZwUnmapViewOfSection");
  ULONG granularity_ = 0;
  ScopedHandle section_;
};

}  // namespace

Bytes ReadSmbiosTable() {
  const SystemLibrary kernel(L"kernel32.dll");
  const auto get_table =
      kernel.Find<UINT(WINAPI*)(DWORD, DWORD, void*, DWORD)>("GetSystemFirmwareTable");
  if (get_table) return AskSystem(get_table);
  const PhysicalMemory memory;
  return TableInMemory(
      [&memory](std::uint32_t address, std::size_t size) { return memory.Read(address, size); });
}

}  // namespace wexpol
