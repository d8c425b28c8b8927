#include "wexpol/platform/named_mutex.h"

#include <windows.h>

#include "wexpol/platform/security.h"
#include "wexpol/platform/win32/handle.h"
#include "wexpol/platform/win32/private_name.h"

namespace wexpol {

NamedMutex::NamedMutex(const std::wstring& name) {
  const std::wstring shared_name = SharedObjectName(name);
  const CSecAttrib security;
  HANDLE handle =
      ::CreateMutexW(static_cast<SECURITY_ATTRIBUTES*>(security.get()), FALSE, shared_name.c_str());
  // Creating asks for every right to one that exists, which its creator may not have granted.
  if (!handle) {
    handle = ::OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, shared_name.c_str());
  }
  handle_ = Own(handle);
}

NamedMutex::WaitResult NamedMutex::Wait(std::uint32_t timeout_ms) {
  if (!handle_) return WaitResult::kFailed;
  switch (::WaitForSingleObject(handle_.get(), timeout_ms)) {
    case WAIT_OBJECT_0:
    case WAIT_ABANDONED:
      owned_ = true;
      return WaitResult::kObtained;
    case WAIT_TIMEOUT:
      return WaitResult::kTimeout;
    default:
      return WaitResult::kFailed;
  }
}

void NamedMutex::Release() {
  if (owned_) ::ReleaseMutex(handle_.get());
  owned_ = false;
}

}  // namespace wexpol
