// A JSON text from the console as a tree.

#ifndef WEXPOL_RECORDS_DOCUMENT_H_
#define WEXPOL_RECORDS_DOCUMENT_H_

#include <rapidjson/document.h>

#include <memory>
#include <new>

#include "wexpol/records/table.h"

namespace wexpol {

// Beyond this depth of nesting a text is read in a way that does not use the stack.
inline constexpr int kRecursiveDepth = 64;

// What the reader allocates by: it would not look whether there is memory.
class ThrowingAllocator : public rapidjson::CrtAllocator {
 public:
  void* Malloc(std::size_t size) { return Checked(CrtAllocator::Malloc(size), size); }
  void* Realloc(void* old, std::size_t old_size, std::size_t size) {
    return Checked(CrtAllocator::Realloc(old, old_size, size), size);
  }

 private:
  static void* Checked(void* memory, std::size_t size) {
    if (!memory && size) throw std::bad_alloc();
    return memory;
  }
};

// Owns the tree and the copy of the text that its strings lie in.
class Document {
 public:
  // False for a null text or one that is no JSON. Nesting is bounded by memory alone.
  [[nodiscard]] bool Parse(const char* text);

  // Null until a text was parsed.
  const rapidjson::Value& root() const { return tree_; }

 private:
  std::unique_ptr<char[]> text_;
  rapidjson::GenericDocument<rapidjson::UTF8<>, rapidjson::MemoryPoolAllocator<>, ThrowingAllocator>
      tree_;
};

// The records of a document: `count` values from `first` on.
struct Records {
  const rapidjson::Value* first = nullptr;
  std::size_t count = 0;
};

// Opens the envelope of a table's document: an array of records, one record, or an object that
// holds either under the singular or else under the table's name. False for any other shape.
[[nodiscard]] bool FindRecords(const Table& table, const rapidjson::Value& root, Records& records);

}  // namespace wexpol

// The memory of trees, whose values are given types, comes from an allocator that does not throw:
// its one function that asks for more is replaced by one that does.
template <>
bool rapidjson::MemoryPoolAllocator<>::AddChunk(std::size_t capacity);

#endif  // WEXPOL_RECORDS_DOCUMENT_H_
