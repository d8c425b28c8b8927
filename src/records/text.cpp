#include "records/text.h"

#include "platform/text.h"

namespace records {

Text ToUtf8(const wchar_t* text) {
  return text ? Text(platform::WideToUtf8(text).c_str()) : Text();
}

WideText ToWide(const char* text) {
  return text ? WideText(platform::Utf8ToWide(text).c_str()) : WideText();
}

}  // namespace records
