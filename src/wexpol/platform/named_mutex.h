// A mutex that processes share by name.

#ifndef WEXPOL_PLATFORM_NAMED_MUTEX_H_
#define WEXPOL_PLATFORM_NAMED_MUTEX_H_

#include <cstdint>
#include <string>

#include "wexpol/platform/scoped_handle.h"

namespace wexpol {

// The handle of one thread to the mutex: created or opened by the constructor, released and closed
// by the destructor. Not to be waited for by a thread that already owns it.
class NamedMutex {
 public:
  enum class WaitResult { kObtained, kTimeout, kFailed };

  // Processes of every integrity level can open it.
  explicit NamedMutex(const std::wstring& name);
  ~NamedMutex() { Release(); }
  NamedMutex(const NamedMutex&) = delete;
  NamedMutex& operator=(const NamedMutex&) = delete;

  // False when it could be neither created nor opened; a wait then fails.
  bool IsValid() const { return handle_ != nullptr; }
  // A mutex whose owner ended without releasing it counts as obtained.
  [[nodiscard]] WaitResult Wait(std::uint32_t timeout_ms);
  // Nothing happens when it is not owned.
  void Release();

 private:
  ScopedHandle handle_;
  bool owned_ = false;
};

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_NAMED_MUTEX_H_
