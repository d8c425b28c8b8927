#include "wexpol/platform/shared_memory.h"

#include <windows.h>

#include "wexpol/platform/security.h"
#include "wexpol/platform/win32/shared_name.h"

namespace wexpol {

void NamedMapping::Closer::operator()(void* handle) const { ::CloseHandle(handle); }

void NamedMapping::Unmapper::operator()(void* view) const { ::UnmapViewOfFile(view); }

NamedMapping::NamedMapping(const std::wstring& name, std::size_t size) {
  const std::wstring shared_name = SharedObjectName(name);
  const CSecAttrib security;
  handle_.reset(
      ::CreateFileMappingW(INVALID_HANDLE_VALUE, static_cast<SECURITY_ATTRIBUTES*>(security.get()),
                           PAGE_READWRITE, 0, static_cast<DWORD>(size), shared_name.c_str()));
  const DWORD error = ::GetLastError();
  created_ = handle_ && error != ERROR_ALREADY_EXISTS;
  if (error == ERROR_ALREADY_EXISTS) {
    handle_.reset(::OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, shared_name.c_str()));
  }
  // The view must be whole: a smaller existing block fails here.
  if (handle_) view_ = {::MapViewOfFile(handle_.get(), FILE_MAP_WRITE, 0, 0, size), Unmapper{size}};
  if (!view_) handle_.reset();
}

}  // namespace wexpol
