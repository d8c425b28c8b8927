// A JSON text from the console as a tree.

#ifndef WEXPOL_RECORDS_DOCUMENT_H_
#define WEXPOL_RECORDS_DOCUMENT_H_

#include <rapidjson/document.h>

#include <memory>

#include "wexpol/records/table.h"

namespace wexpol {

// Owns the tree and the copy of the text that its strings lie in.
class Document {
 public:
  // False for a null text or one that is no JSON. Nesting is bounded by memory alone.
  [[nodiscard]] bool Parse(const char* text);

  // Null until a text was parsed.
  const rapidjson::Value& root() const { return tree_; }

 private:
  std::unique_ptr<char[]> text_;
  rapidjson::Document tree_;
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

#endif  // WEXPOL_RECORDS_DOCUMENT_H_
