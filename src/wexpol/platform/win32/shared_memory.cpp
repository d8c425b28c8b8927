#include "wexpol/platform/shared_memory.h"

#include <windows.h>

#include "wexpol/platform/security.h"
#include "wexpol/platform/win32/handle.h"
#include "wexpol/platform/win32/private_name.h"

namespace wexpol {

NamedMapping::NamedMapping(const std::wstring& name, std::size_t size) {
  const std::wstring shared_name = SharedObjectName(name);
  const CSecAttrib security;
  ScopedHandle section = Own(
      ::CreateFileMappingW(INVALID_HANDLE_VALUE, static_cast<SECURITY_ATTRIBUTES*>(security.get()),
                           PAGE_READWRITE, 0, static_cast<DWORD>(size), shared_name.c_str()));
  const DWORD error = ::GetLastError();
  created_ = section && error != ERROR_ALREADY_EXISTS;
  if (error == ERROR_ALREADY_EXISTS) {
    section = Own(::OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, shared_name.c_str()));
  }
  if (!section) return;
  // The view must be whole: a smaller existing block fails here. It keeps the block alive.
  data_ = ::MapViewOfFile(section.get(), FILE_MAP_WRITE, 0, 0, size);
  block_ = {data_, {[](void* view) { ::UnmapViewOfFile(view); }}};
}

}  // namespace wexpol
