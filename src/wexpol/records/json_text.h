// The strings of a JSON text.

#ifndef WEXPOL_RECORDS_JSON_TEXT_H_
#define WEXPOL_RECORDS_JSON_TEXT_H_

#include <rapidjson/fwd.h>

#include <string>
#include <string_view>

namespace wexpol {

// Appends `text` to `out` as a JSON string; bytes that are no UTF-8 become U+FFFD.
void AppendJsonString(std::string_view text, std::string& out);

// The text of a JSON string, which ends at a zero character in it.
std::string_view JsonText(const rapidjson::Value& string);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_JSON_TEXT_H_
