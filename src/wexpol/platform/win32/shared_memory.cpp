#include "wexpol/platform/shared_memory.h"

#include <windows.h>

#include <utility>

#include "wexpol/platform/look_only.h"
#include "wexpol/platform/security.h"
#include "wexpol/platform/win32/handle.h"
#include "wexpol/platform/win32/private_name.h"

namespace wexpol {
namespace {

// The name lives as long as a handle of the section, the memory as long as a view.
struct SharedBlock {
  ScopedHandle section;
  ScopedHandle view;
};

}  // namespace

NamedMapping::NamedMapping(const std::wstring& name, std::size_t size) {
  const std::wstring shared_name = SharedObjectName(name);
  ScopedHandle section;
  if (!OnlyLooks()) {
    const CSecAttrib security;
    section = Own(::CreateFileMappingW(
        INVALID_HANDLE_VALUE, static_cast<SECURITY_ATTRIBUTES*>(security.get()), PAGE_READWRITE, 0,
        static_cast<DWORD>(size), shared_name.c_str()));
    created_ = section && ::GetLastError() != ERROR_ALREADY_EXISTS;
  }
  if (!created_) {
    section = Own(::OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, shared_name.c_str()));
  }
  if (!section) return;
  // The view must be whole: a smaller existing block fails here.
  data_ = ::MapViewOfFile(section.get(), FILE_MAP_WRITE, 0, 0, size);
  if (!data_) return;
  ScopedHandle view(data_, {[](void* mapped) { ::UnmapViewOfFile(mapped); }});
  block_ = {new SharedBlock{std::move(section), std::move(view)},
            {[](void* block) { delete static_cast<SharedBlock*>(block); }}};
}

}  // namespace wexpol
