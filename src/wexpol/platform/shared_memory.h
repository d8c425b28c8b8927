// A block of memory that processes share by name; it lives as long as one of them holds it.

#ifndef WEXPOL_PLATFORM_SHARED_MEMORY_H_
#define WEXPOL_PLATFORM_SHARED_MEMORY_H_

#include <cstddef>
#include <string>

#include "wexpol/platform/scoped_handle.h"

namespace wexpol {

class NamedMapping {
 public:
  NamedMapping() = default;
  // Creates the block, filled with zeros, or opens the existing one. Processes of every integrity
  // level can open it. An existing block that is smaller than `size` is a failure.
  NamedMapping(const std::wstring& name, std::size_t size);

  // The block, writable; null after a failure.
  void* data() const { return block_ ? data_ : nullptr; }
  // Whether this object made the block, which then is its to fill.
  bool created() const { return created_; }

 private:
  ScopedHandle block_;
  void* data_ = nullptr;
  bool created_ = false;
};

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_SHARED_MEMORY_H_
