// Access to the registry under HKEY_LOCAL_MACHINE; on the host, to a folder that stands for it.

#ifndef WEXPOL_PLATFORM_REGISTRY_H_
#define WEXPOL_PLATFORM_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "wexpol/platform/export.h"
#include "wexpol/platform/scoped_handle.h"

namespace wexpol {

// Which half of a 64-bit system's registry a key is looked up in.
enum class RegistryView { kProcess, k32Bit, k64Bit };

enum class RegistryAccess { kQuery, kRead, kReadWrite, kFull };

// The system's numbers.
enum class RegistryType : std::uint32_t { kString = 1, kExpandString = 2, kBinary = 3, kDword = 4 };

enum class RegistryStatus { kOk, kNotFound, kFailed };

// Characters of a text value, its terminator included.
constexpr std::size_t kMaxRegistryText = 128;

}  // namespace wexpol

// One open key, closed by the destructor; movable, not copyable.
//
// A query answers false and leaves its outputs untouched when the value is missing, of another type
// or too large. Names ignore case. Every operation on a closed key fails.
class WEXPOL_API CRegistryVeyra {
 public:
  // Open and Create close the key that was held. An empty path is refused.
  wexpol::RegistryStatus Open(const std::wstring& path, wexpol::RegistryAccess access,
                              wexpol::RegistryView view);
  // Creates what is missing of the path, or opens the key when it is there.
  wexpol::RegistryStatus Create(const std::wstring& path, wexpol::RegistryAccess access,
                                wexpol::RegistryView view);
  // Opens with full access; only when the key does not exist, creates it for reading and writing.
  bool OpenForWriting(const std::wstring& path, wexpol::RegistryView view);
  void Close() { key_.reset(); }
  bool IsOpen() const { return key_ != nullptr; }

  bool QueryDWORDValue(const wchar_t* name, std::uint32_t* value) const;
  bool SetDWORDValue(const wchar_t* name, std::uint32_t value);

  // Either type of text, as it is stored. It ends at its terminator or, where that is missing, with
  // its last whole character. Stored data of more than `capacity` characters is too large.
  bool QueryTextValue(const wchar_t* name, std::wstring* value,
                      std::size_t capacity = wexpol::kMaxRegistryText) const;
  bool SetTextValue(const wchar_t* name, const std::wstring& value);

  // Up to `capacity` bytes, how many in `size`; without `size`, exactly `capacity` bytes.
  bool QueryBinaryValue(const wchar_t* name, void* data, std::size_t capacity,
                        std::size_t* size = nullptr) const;
  bool SetBinaryValue(const wchar_t* name, const void* data, std::size_t size);

  // The stored bytes of a value of any type, at most `capacity` of them.
  bool QueryValue(const wchar_t* name, wexpol::RegistryType* type, void* data, std::size_t capacity,
                  std::size_t* size) const;
  bool SetValue(const wchar_t* name, wexpol::RegistryType type, const void* data, std::size_t size);

  // True when the value existed and is gone.
  bool DeleteValue(const wchar_t* name);

  std::vector<std::wstring> SubkeyNames() const;

 private:
  wexpol::ScopedHandle key_;
};

#endif  // WEXPOL_PLATFORM_REGISTRY_H_
