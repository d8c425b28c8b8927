#include "wexpol/records/document_rows.h"

#include <algorithm>
#include <cstring>

#include "wexpol/records/row.h"

namespace wexpol {
namespace {

constexpr unsigned kReadFlags = rapidjson::kParseInsituFlag | rapidjson::kParseStopWhenDoneFlag;

// Takes a string, and nothing else.
struct NameHandler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, NameHandler> {
  std::string_view name;
  bool Default() { return false; }
  bool String(const char* text, rapidjson::SizeType size, bool) {
    name = {text, size};
    return true;
  }
};

// A member of the envelope that is no record.
struct SkipHandler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, SkipHandler> {
  int depth = 0;
  bool StartObject() { return ++depth <= kRecursiveDepth; }
  bool EndObject(rapidjson::SizeType) { return --depth, true; }
  bool StartArray() { return ++depth <= kRecursiveDepth; }
  bool EndArray(rapidjson::SizeType) { return --depth, true; }
};

}  // namespace

void RowHandler::Start() {
  std::fill_n(members_.begin(), columns_.size(), nullptr);
  target_ = nullptr;
  depth_ = 0;
  expected_ = 0;
  text_.expected = columns_.begin()->name;
}

bool RowHandler::Key(const char* text, rapidjson::SizeType size, bool) {
  if (depth_ != 1) return true;
  return text == text_.met ? Take(expected_) : Find({text, size});
}

// Members mostly come in column order, so each is looked for behind the one before.
bool RowHandler::Find(std::string_view name) {
  const std::size_t count = columns_.size();
  for (std::size_t tried = 0; tried < count; ++tried) {
    const std::size_t at = (expected_ + tried) % count;
    if (columns_.begin()[at].name == name) return Take(at);
  }
  return true;
}

bool RowHandler::Take(std::size_t column) {
  if (!members_[column]) members_[column] = target_ = &values_[column];
  expected_ = column + 1 == columns_.size() ? 0 : column + 1;
  text_.expected = columns_.begin()[expected_].name;
  return true;
}

DocumentRows::DocumentRows(const Table& table, const void* defaults, const char* json)
    : table_(table),
      defaults_(defaults),
      pool_(buffer_.data(), buffer_.size()),
      shared_{json + std::strlen(json), pool_, ""},
      row_(table.columns(), shared_),
      text_(json, shared_) {}

bool DocumentRows::Read(auto& handler) {
  return !reader_.template Parse<kReadFlags>(text_, handler).IsError();
}

void DocumentRows::SkipSpace() {
  while (text_.Peek() == ' ' || text_.Peek() == '\n' || text_.Peek() == '\r' ||
         text_.Peek() == '\t') {
    text_.Take();
  }
}

bool DocumentRows::Take(char c) {
  SkipSpace();
  if (text_.Peek() != c) return false;
  text_.Take();
  return true;
}

// The name of a member and the colon behind it.
bool DocumentRows::Name(std::string_view& name) {
  NameHandler handler;
  if (!Read(handler)) return false;
  name = handler.name;
  return Take(':');
}

bool DocumentRows::SkipValue() {
  SkipHandler handler;
  return Read(handler);
}

bool DocumentRows::OpenEnvelope() {
  if (Take('[')) return true;
  in_object_ = Take('{');
  if (!in_object_) return false;
  std::string_view name;
  do {
    if (!Name(name)) return false;
    is_singular_ = name == table_.json_key();
    if (is_singular_ || name == table_.name()) return Take('[');
    if (!SkipValue()) return false;
  } while (Take(','));
  return false;
}

// A member under the singular name that comes later would have gone before.
bool DocumentRows::CloseEnvelope() {
  std::string_view name;
  while (in_object_ && Take(',')) {
    if (!Name(name) || (!is_singular_ && name == table_.json_key()) || !SkipValue()) return false;
  }
  if (in_object_ && !Take('}')) return false;
  SkipSpace();
  at_end_ = text_.AtEnd();
  return at_end_;
}

bool DocumentRows::Start() {
  if (!OpenEnvelope() || !Next() || at_end_) return false;
  SkipSpace();
  return text_.Peek() == ',';
}

bool DocumentRows::Next() {
  if (Take(']')) return CloseEnvelope();
  if (!is_first_ && !Take(',')) return false;
  is_first_ = false;
  SkipSpace();
  if (text_.Peek() != '{') return false;
  row_.Start();
  pool_.release();
  return Read(row_);
}

bool DocumentRows::Column(std::size_t column, Target& target) const {
  const ColumnDef& def = table_.columns().begin()[column];
  const rapidjson::Value* member = row_.member(column);
  if (member && def.codec->bind_parsed(*member, target)) return true;
  if (!MayLack(def, member, kRequired)) return false;
  def.codec->bind(def.field(const_cast<void*>(defaults_)), target);
  return true;
}

}  // namespace wexpol
