#include "wexpol/platform/registry.h"

#include <windows.h>

#include <iterator>
#include <limits>

#include "wexpol/platform/look_only.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/win32/private_name.h"

using wexpol::RegistryAccess;
using wexpol::RegistryStatus;
using wexpol::RegistryType;
using wexpol::RegistryView;

namespace wexpol {
namespace {

// The key below HKEY_CURRENT_USER that stands for HKEY_LOCAL_MACHINE; empty for the machine's own.
std::wstring g_redirected;

struct Place {
  HKEY root;
  std::wstring path;
  REGSAM view;
};

Place PlaceOf(const std::wstring& path, RegistryView view) {
  if (!g_redirected.empty()) {
    // The views are separate branches there: the system splits only its own part of the registry.
    const wchar_t* branch = view == RegistryView::k32Bit ? L"\\32\\" : L"\\64\\";
    return {HKEY_CURRENT_USER, g_redirected + branch + path, 0};
  }
  const REGSAM flag = view == RegistryView::k32Bit   ? KEY_WOW64_32KEY
                      : view == RegistryView::k64Bit ? KEY_WOW64_64KEY
                                                     : 0;
  return {HKEY_LOCAL_MACHINE, path, flag};
}

REGSAM RightsOf(RegistryAccess access) {
  if (OnlyLooks() && access != RegistryAccess::kQuery) return KEY_READ;
  switch (access) {
    case RegistryAccess::kQuery:
      return KEY_QUERY_VALUE;
    case RegistryAccess::kRead:
      return KEY_READ;
    case RegistryAccess::kReadWrite:
      return KEY_READ | KEY_WRITE;
    default:
      return KEY_ALL_ACCESS;
  }
}

RegistryStatus StatusOf(LSTATUS result) {
  if (result == ERROR_SUCCESS) return RegistryStatus::kOk;
  return result == ERROR_FILE_NOT_FOUND ? RegistryStatus::kNotFound : RegistryStatus::kFailed;
}

ScopedHandle OwnKey(HKEY key) {
  return {key, {[](void* handle) { ::RegCloseKey(static_cast<HKEY>(handle)); }}};
}

}  // namespace

void RedirectRegistry(const std::wstring& folder) {
  g_redirected =
      folder.empty() ? L"" : L"Software\\Corvane Agent Redirected\\" + PrivateName(folder);
}

void DeleteRedirectedRegistry() {
  if (g_redirected.empty()) return;
  if (::RegDeleteTreeW(HKEY_CURRENT_USER, g_redirected.c_str()) == ERROR_SUCCESS) {
    ::RegDeleteKeyW(HKEY_CURRENT_USER, g_redirected.c_str());
  }
}

}  // namespace wexpol

RegistryStatus CRegistryVeyra::Open(const std::wstring& path, RegistryAccess access,
                                    RegistryView view) {
  Close();
  if (path.empty()) return RegistryStatus::kFailed;
  const auto place = wexpol::PlaceOf(path, view);
  HKEY key;
  const LSTATUS result = ::RegOpenKeyExW(place.root, place.path.c_str(), 0,
                                         wexpol::RightsOf(access) | place.view, &key);
  if (result == ERROR_SUCCESS) key_ = wexpol::OwnKey(key);
  return wexpol::StatusOf(result);
}

RegistryStatus CRegistryVeyra::Create(const std::wstring& path, RegistryAccess access,
                                      RegistryView view) {
  if (wexpol::OnlyLooks()) return Open(path, access, view);
  Close();
  if (path.empty()) return RegistryStatus::kFailed;
  const auto place = wexpol::PlaceOf(path, view);
  HKEY key;
  const LSTATUS result =
      ::RegCreateKeyExW(place.root, place.path.c_str(), 0, nullptr, 0,
                        wexpol::RightsOf(access) | place.view, nullptr, &key, nullptr);
  if (result == ERROR_SUCCESS) key_ = wexpol::OwnKey(key);
  return wexpol::StatusOf(result);
}

bool CRegistryVeyra::QueryValue(const wchar_t* name, RegistryType* type, void* data,
                                std::size_t capacity, std::size_t* size) const {
  if (!key_) return false;
  DWORD stored_type;
  auto stored_size = static_cast<DWORD>(capacity);
  if (::RegQueryValueExW(static_cast<HKEY>(key_.get()), name, nullptr, &stored_type,
                         static_cast<BYTE*>(data), &stored_size) != ERROR_SUCCESS ||
      stored_size > capacity) {
    return false;
  }
  *type = static_cast<RegistryType>(stored_type);
  *size = stored_size;
  return true;
}

bool CRegistryVeyra::SetValue(const wchar_t* name, RegistryType type, const void* data,
                              std::size_t size) {
  return key_ && size <= std::numeric_limits<DWORD>::max() &&
         ::RegSetValueExW(static_cast<HKEY>(key_.get()), name, 0, static_cast<DWORD>(type),
                          static_cast<const BYTE*>(data),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

bool CRegistryVeyra::DeleteValue(const wchar_t* name) {
  return key_ && ::RegDeleteValueW(static_cast<HKEY>(key_.get()), name) == ERROR_SUCCESS;
}

std::vector<std::wstring> CRegistryVeyra::SubkeyNames() const {
  std::vector<std::wstring> names;
  wchar_t name[256];  // a key's name has 255 characters at most
  for (DWORD index = 0; key_; ++index) {
    auto length = static_cast<DWORD>(std::size(name));
    if (::RegEnumKeyExW(static_cast<HKEY>(key_.get()), index, name, &length, nullptr, nullptr,
                        nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    names.emplace_back(name, length);
  }
  return names;
}
