// The records of a JSON document one after another, as the rows of a table.

#ifndef WEXPOL_RECORDS_DOCUMENT_ROWS_H_
#define WEXPOL_RECORDS_DOCUMENT_ROWS_H_

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

#include <array>
#include <memory_resource>

#include "wexpol/records/document.h"
#include "wexpol/records/table.h"
#include "wexpol/records/text_stream.h"

namespace wexpol {

// Takes the members of one record that name a column; of the same name the first counts. The text
// of a string stays where the stream answers it.
class RowHandler {
 public:
  RowHandler(const Columns& columns, TextStream::Shared& text) : columns_(columns), text_(text) {}

  // Makes ready for the next record.
  void Start();
  // The member of a column, null where there is none. One that is an object or an array reads as
  // JSON's null, which no column takes either.
  const rapidjson::Value* member(std::size_t column) const { return members_[column]; }

  bool Null() { return Set(); }
  bool Bool(bool value) { return Set(value); }
  bool Int(int value) { return Set(value); }
  bool Uint(unsigned value) { return Set(value); }
  bool Int64(std::int64_t value) { return Set(value); }
  bool Uint64(std::uint64_t value) { return Set(value); }
  bool Double(double value) { return Set(value); }
  bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
  bool String(const char* text, rapidjson::SizeType size, bool) {
    return Set(rapidjson::StringRef(text, size));
  }
  bool Key(const char* text, rapidjson::SizeType size, bool);
  bool StartObject() { return (depth_ == 0 || Set()) && ++depth_ <= kRecursiveDepth; }
  bool EndObject(rapidjson::SizeType) { return --depth_, true; }
  bool StartArray() { return Set() && ++depth_ <= kRecursiveDepth; }
  bool EndArray(rapidjson::SizeType) { return --depth_, true; }

 private:
  bool Find(std::string_view name);
  bool Take(std::size_t column);

  template <typename... Value>
  bool Set(Value... value) {
    if (target_) new (target_) rapidjson::Value(value...);
    target_ = nullptr;
    return true;
  }

  const Columns& columns_;
  TextStream::Shared& text_;
  std::size_t expected_ = 0;            // The column whose member probably comes next.
  rapidjson::Value* target_ = nullptr;  // Where the value goes that comes next.
  int depth_ = 0;
  std::array<const rapidjson::Value*, kMaxColumns> members_;
  std::array<rapidjson::Value, kMaxColumns> values_;
};

// Reads the plain document only: an array of more than one object, alone or under a name of the
// table, none of them without a member that it must have, all of it JSON. For anything else an
// operation answers false, and the document is to be read in another way.
class DocumentRows {
 public:
  // `defaults` is the row of a record that holds nothing. All arguments must outlive the rows.
  DocumentRows(const Table& table, const void* defaults, const char* json);

  // Comes to the first record.
  bool Start();
  // Comes to the next record, or to the end.
  bool Next();
  bool AtEnd() const { return at_end_; }
  // Gives what is stored of a column of the record.
  bool Column(std::size_t column, Target& target) const;

 private:
  bool OpenEnvelope();
  bool CloseEnvelope();
  bool Read(auto& handler);
  bool Name(std::string_view& name);
  bool SkipValue();
  void SkipSpace();
  bool Take(char c);

  const Table& table_;
  const void* defaults_;
  std::array<char, 1024> buffer_;
  std::pmr::monotonic_buffer_resource pool_;
  TextStream::Shared shared_;
  RowHandler row_;
  TextStream text_;
  rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, ThrowingAllocator> reader_;
  bool in_object_ = false;    // The records are a member of the root.
  bool is_singular_ = false;  // Under the name that goes before the other.
  bool is_first_ = true;
  bool at_end_ = false;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_DOCUMENT_ROWS_H_
