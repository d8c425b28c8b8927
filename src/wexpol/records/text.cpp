#include "wexpol/records/text.h"

#include "wexpol/platform/text.h"

namespace wexpol {

Text ToUtf8(const wchar_t* text) { return text ? Text(WideToUtf8(text).c_str()) : Text(); }

WideText ToWide(const char* text) { return text ? WideText(Utf8ToWide(text).c_str()) : WideText(); }

}  // namespace wexpol
