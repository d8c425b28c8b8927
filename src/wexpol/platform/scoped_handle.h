// The one owner of what the operating system lends.

#ifndef WEXPOL_PLATFORM_SCOPED_HANDLE_H_
#define WEXPOL_PLATFORM_SCOPED_HANDLE_H_

#include <memory>

namespace wexpol {

struct HandleCloser {
  void (*close)(void* handle) = nullptr;
  void operator()(void* handle) const { close(handle); }
};

// A handle of any kind and how to give it back: ScopedHandle(handle, {&Close}). A null one is
// nothing and is not closed. Movable, not copyable.
using ScopedHandle = std::unique_ptr<void, HandleCloser>;

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_SCOPED_HANDLE_H_
