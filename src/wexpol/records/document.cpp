#include "wexpol/records/document.h"

#include <algorithm>
#include <cstring>

namespace wexpol {
namespace {

// Builds the tree while the nesting is shallow; its refusal ends the reading. The recursive reader
// is a quarter faster, the iterative one cannot exhaust the stack. Documents are nested three or
// four levels deep.
template <typename Tree>
class ShallowTree {
 public:
  explicit ShallowTree(Tree& tree) : tree_(tree) {}

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
  Tree& tree_;
  int depth_ = 0;
};

// Strings are decoded where they lie in `text`, which the tree then points into.
template <unsigned kFlags, typename Handler, typename Tree>
rapidjson::ParseErrorCode Read(char* text, Tree& tree) {
  rapidjson::ParseErrorCode code = rapidjson::kParseErrorNone;
  auto read = [&](Tree& target) {
    rapidjson::InsituStringStream stream(text);
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, ThrowingAllocator> reader;
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
  using Tree = decltype(tree_);
  auto code = Read<rapidjson::kParseNoFlags, ShallowTree<Tree>>(text_.get(), tree_);
  if (code == rapidjson::kParseErrorTermination) {
    text_ = ReadableCopy(text);
    code = Read<rapidjson::kParseIterativeFlag, Tree&>(text_.get(), tree_);
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

template <>
bool rapidjson::MemoryPoolAllocator<>::AddChunk(std::size_t capacity) {
  if (!baseAllocator_) ownBaseAllocator_ = baseAllocator_ = new CrtAllocator;
  void* memory = baseAllocator_->Malloc(RAPIDJSON_ALIGN(sizeof(ChunkHeader)) + capacity);
  if (!memory) throw std::bad_alloc();
  auto* chunk = static_cast<ChunkHeader*>(memory);
  chunk->capacity = capacity;
  chunk->size = 0;
  chunk->next = chunkHead_;
  chunkHead_ = chunk;
  return true;
}
