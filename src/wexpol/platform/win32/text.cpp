#include "wexpol/platform/text.h"

#include <windows.h>

namespace wexpol {

std::wstring SystemCodePageToWide(std::string_view text) {
  const auto size = static_cast<int>(text.size());
  const int needed = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), needed);
  return wide;
}

}  // namespace wexpol
