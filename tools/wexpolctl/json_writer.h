// How the tool writes JSON.

#ifndef WEXPOL_WEXPOLCTL_JSON_WRITER_H_
#define WEXPOL_WEXPOLCTL_JSON_WRITER_H_

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <string>

namespace wexpolctl {

class JsonWriter {
 public:
  JsonWriter() { writer_.SetIndent(' ', 2); }

  void StartObject() { writer_.StartObject(); }
  void EndObject() { writer_.EndObject(); }
  void StartArray() { writer_.StartArray(); }
  void EndArray() { writer_.EndArray(); }
  // The blanks of a name are underscores.
  void Name(std::string name) {
    std::replace(name.begin(), name.end(), ' ', '_');
    writer_.Key(name.c_str(), static_cast<rapidjson::SizeType>(name.size()));
  }
  void Value(const std::string& json) {
    writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
  }
  const char* Text() const { return buffer_.GetString(); }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_JSON_WRITER_H_
