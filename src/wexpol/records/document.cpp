#include "wexpol/records/document.h"

#include <algorithm>
#include <cstring>

namespace wexpol {
namespace {

// The recursive reader is a quarter faster, the iterative one cannot exhaust the stack. Documents
// are nested three or four levels deep; beyond this depth they are read again iteratively.
constexpr int kRecursiveDepth = 64;

// Builds the tree while the nesting is shallow; its refusal ends the reading.
class ShallowTree {
 public:
  explicit ShallowTree(rapidjson::Document& tree) : tree_(tree) {}

  bool Null() { return tree_.Null(); }
  bool Bool(bool value) { return tree_.Bool(value); }
  bool Int(int value) { return tree_.Int(value); }
  bool Uint(unsigned value) { return tree_.Uint(value); }
  bool Int64(std::int64_t value) { return tree_.Int64(value); }
  bool Uint64(std::uint64_t value) { return tree_.Uint64(value); }
  bool Double(double value) { return tree_.Double(value); }
  bool RawNumber(const char* text, rapidjson::SizeType size, bool copy) {
    return tree_.RawNumber(text, size, copy);
  }
  bool String(const char* text, rapidjson::SizeType size, bool copy) {
    return tree_.String(text, size, copy);
  }
  bool Key(const char* text, rapidjson::SizeType size, bool copy) {
    return tree_.Key(text, size, copy);
  }
  bool StartObject() { return ++depth_ <= kRecursiveDepth && tree_.StartObject(); }
  bool EndObject(rapidjson::SizeType count) { return --depth_, tree_.EndObject(count); }
  bool StartArray() { return ++depth_ <= kRecursiveDepth && tree_.StartArray(); }
  bool EndArray(rapidjson::SizeType count) { return --depth_, tree_.EndArray(count); }

 private:
  rapidjson::Document& tree_;
  int depth_ = 0;
};

// Strings are decoded where they lie in `text`, which the tree then points into.
template <unsigned kFlags, typename Handler>
rapidjson::ParseErrorCode Read(char* text, rapidjson::Document& tree) {
  rapidjson::ParseErrorCode code = rapidjson::kParseErrorNone;
  auto read = [&](rapidjson::Document& target) {
    rapidjson::InsituStringStream stream(text);
    rapidjson::Reader reader;
    Handler handler(target);
    code = reader.Parse<rapidjson::kParseInsituFlag | kFlags>(stream, handler).Code();
    return code == rapidjson::kParseErrorNone;
  };
  tree.Populate(read);
  return code;
}

// A copy of the text to be read in place. The reader looks for white space 16 bytes at a time and
// so may read past the end of the text.
std::unique_ptr<char[]> ReadableCopy(const char* text) {
  constexpr std::size_t kReadAhead = 16;
  const std::size_t size = std::strlen(text);
  std::unique_ptr<char[]> copy(new char[size + kReadAhead]);
  std::memcpy(copy.get(), text, size);
  std::memset(copy.get() + size, 0, kReadAhead);
  return copy;
}

}  // namespace

bool Document::Parse(const char* text) {
  if (!text) return false;
  text_ = ReadableCopy(text);
  auto code = Read<rapidjson::kParseNoFlags, ShallowTree>(text_.get(), tree_);
  if (code == rapidjson::kParseErrorTermination) {
    text_ = ReadableCopy(text);
    code = Read<rapidjson::kParseIterativeFlag, rapidjson::Document&>(text_.get(), tree_);
  }
  return code == rapidjson::kParseErrorNone;
}

bool FindRecords(const Table& table, const rapidjson::Value& root, Records& records) {
  const rapidjson::Value* found = &root;
  if (root.IsObject()) {
    const auto unwrap = table.deviations().unwrap;
    found = unwrap ? &unwrap(root) : &MemberOrSelf(root, {table.json_key(), table.name()});
  }
  if (found->IsObject()) {
    records = {found, 1};
  } else if (found->IsArray()) {
    records = {found->Begin(), found->Size()};
  } else {
    return false;
  }
  return true;
}

}  // namespace wexpol
