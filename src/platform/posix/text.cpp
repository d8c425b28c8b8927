#include "platform/text.h"

namespace platform {

std::wstring SystemCodePageToWide(std::string_view text) { return Utf8ToWide(text); }

}  // namespace platform
