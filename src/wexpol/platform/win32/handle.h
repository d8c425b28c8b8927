// Owners of the kinds of handle that most of the port uses.

#ifndef WEXPOL_PLATFORM_WIN32_HANDLE_H_
#define WEXPOL_PLATFORM_WIN32_HANDLE_H_

#include <windows.h>

#include "wexpol/platform/scoped_handle.h"

namespace wexpol {

// Of a kernel object; null where the call that made it failed.
inline ScopedHandle Own(HANDLE handle) {
  return {handle == INVALID_HANDLE_VALUE ? nullptr : handle,
          {[](void* owned) { ::CloseHandle(owned); }}};
}

// Of memory from LocalAlloc.
inline ScopedHandle OwnMemory(void* memory) {
  return {memory, {[](void* owned) { ::LocalFree(owned); }}};
}

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIN32_HANDLE_H_
