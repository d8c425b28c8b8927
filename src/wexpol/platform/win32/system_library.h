// A library of the system, loaded at run time.

#ifndef WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_
#define WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_

#include <memory>

namespace wexpol {

// Loaded by the constructor, from the system's own folder and from nowhere else; unloaded by the
// destructor.
class SystemLibrary {
 public:
  explicit SystemLibrary(const wchar_t* name);

  bool IsLoaded() const { return handle_ != nullptr; }

  // The exported function, or null when the library or the function is missing.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  struct Closer {
    void operator()(void* handle) const;
  };

  using Address = void (*)();
  Address FindAddress(const char* name) const;

  std::unique_ptr<void, Closer> handle_;
};

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIN32_SYSTEM_LIBRARY_H_
