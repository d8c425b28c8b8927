#include "wexpol/platform/win32/private_name.h"

#include <windows.h>

#include <algorithm>

#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"

namespace wexpol {
namespace {

std::wstring g_suffix;

}  // namespace

std::wstring PrivateName(const std::wstring& folder) {
  wchar_t whole[kMaxPath];
  const DWORD length = ::GetFullPathNameW(folder.c_str(), kMaxPath, whole, nullptr);
  std::wstring name = length > 0 && length < kMaxPath ? std::wstring(whole, length) : folder;
  ::CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  std::replace(name.begin(), name.end(), L'\\', L'/');
  while (name.ends_with(L'/')) name.pop_back();
  return name;
}

void RedirectSharedObjects(const std::wstring& folder) {
  g_suffix = folder.empty() ? L"" : L"." + PrivateName(folder);
}

std::wstring SharedObjectName(const std::wstring& name) { return name + g_suffix; }

}  // namespace wexpol
