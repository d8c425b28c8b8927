#include "wexpol/platform/win32/system_library.h"

#include <windows.h>

#include <string>

namespace wexpol {

SystemLibrary::SystemLibrary(const wchar_t* name) {
  wchar_t folder[MAX_PATH];
  const UINT length = ::GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return;
  // What it depends on is looked for in that folder first, too, not beside the program.
  handle_ = {::LoadLibraryExW((std::wstring(folder) + L'\\' + name).c_str(), nullptr,
                              LOAD_WITH_ALTERED_SEARCH_PATH),
             {[](void* library) { ::FreeLibrary(static_cast<HMODULE>(library)); }}};
}

SystemLibrary::Address SystemLibrary::FindAddress(const char* name) const {
  if (!handle_) return nullptr;
  return reinterpret_cast<Address>(::GetProcAddress(static_cast<HMODULE>(handle_.get()), name));
}

}  // namespace wexpol
