#include "wexpol/platform/registry.h"

#include <cstring>
#include <cwchar>
#include <utility>

using wexpol::RegistryStatus;
using wexpol::RegistryType;

bool CRegistryVeyra::OpenForWriting(const std::wstring& path, wexpol::RegistryView view) {
  RegistryStatus status = Open(path, wexpol::RegistryAccess::kFull, view);
  if (status == RegistryStatus::kNotFound) {
    status = Create(path, wexpol::RegistryAccess::kReadWrite, view);
  }
  return status == RegistryStatus::kOk;
}

bool CRegistryVeyra::QueryDWORDValue(const wchar_t* name, std::uint32_t* value) const {
  RegistryType type;
  std::uint32_t stored;
  std::size_t size;
  if (!QueryValue(name, &type, &stored, sizeof stored, &size)) return false;
  if (type != RegistryType::kDword || size != sizeof stored) return false;
  *value = stored;
  return true;
}

bool CRegistryVeyra::SetDWORDValue(const wchar_t* name, std::uint32_t value) {
  return SetValue(name, RegistryType::kDword, &value, sizeof value);
}

bool CRegistryVeyra::QueryTextValue(const wchar_t* name, std::wstring* value,
                                    std::size_t capacity) const {
  RegistryType type;
  std::wstring stored(capacity, L'\0');
  std::size_t size;
  if (!QueryValue(name, &type, stored.data(), capacity * sizeof(wchar_t), &size)) return false;
  if (type != RegistryType::kString && type != RegistryType::kExpandString) return false;
  stored.resize(size / sizeof(wchar_t));
  stored.resize(std::wcslen(stored.c_str()));
  *value = std::move(stored);
  return true;
}

bool CRegistryVeyra::SetTextValue(const wchar_t* name, const std::wstring& value) {
  return SetValue(name, RegistryType::kString, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

bool CRegistryVeyra::QueryBinaryValue(const wchar_t* name, void* data, std::size_t capacity,
                                      std::size_t* size) const {
  RegistryType type;
  std::vector<unsigned char> stored(capacity);
  std::size_t stored_size;
  if (!QueryValue(name, &type, stored.data(), capacity, &stored_size)) return false;
  if (type != RegistryType::kBinary) return false;
  if (!size && stored_size != capacity) return false;
  if (stored_size > 0) std::memcpy(data, stored.data(), stored_size);
  if (size) *size = stored_size;
  return true;
}

bool CRegistryVeyra::SetBinaryValue(const wchar_t* name, const void* data, std::size_t size) {
  return SetValue(name, RegistryType::kBinary, data, size);
}
