#include "wexpol/platform/system_info.h"

namespace wexpol {

std::optional<std::wstring> AskWithGrowingBuffer(
    std::size_t first_size, const std::function<Asked(wchar_t*, std::size_t*)>& ask) {
  std::wstring text(first_size, L'\0');
  for (;;) {
    std::size_t size = text.size();
    const Asked asked = ask(text.data(), &size);
    const bool grows = size > text.size();
    if (asked == Asked::kFailed || grows != (asked == Asked::kTooSmall)) return std::nullopt;
    text.resize(size);
    if (asked == Asked::kOk) return text;
  }
}

}  // namespace wexpol
