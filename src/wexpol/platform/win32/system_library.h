// A library of the system, loaded at run time.

#ifndef WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_
#define WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_

#include "wexpol/platform/scoped_handle.h"

namespace wexpol {

// Loaded by the constructor, from the system's own folder and from nowhere else; unloaded by the
// destructor.
class SystemLibrary {
 public:
  explicit SystemLibrary(const wchar_t* name);

  // The exported function, or null when the library or the function is missing.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  using Address = void (*)();
  Address FindAddress(const char* name) const;

  ScopedHandle handle_;
};

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_
