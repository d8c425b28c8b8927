#include "wexpol/platform/text.h"

namespace wexpol {

std::wstring SystemCodePageToWide(std::string_view text) { return Utf8ToWide(text); }

}  // namespace wexpol
