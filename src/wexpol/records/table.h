// How a table is told: one line per column.

#ifndef WEXPOL_RECORDS_TABLE_H_
#define WEXPOL_RECORDS_TABLE_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "wexpol/records/codec.h"

namespace wexpol {

// What a column deviates in. Most columns carry none of these.
enum ColumnFlags : unsigned {
  kPlain = 0,
  kKey = 1,            // Names the row in updates and deletes.
  kRequired = 2,       // A document without it is rejected.
  kStrict = 4,         // The same, in strict parsing only.
  kWellFormed = 8,     // A document that has it with a bad value is rejected.
  kAssignedByDb = 16,  // Left out of the insert.
  kNotReported = 32,   // Left out of generated JSON.
  kAlwaysSet = 64,     // Part of every update, as NULL when null.
};

struct ColumnDef {
  std::string_view name;  // Of the column and of the JSON key; zero-terminated.
  const Codec* codec;
  void* (*field)(void* row);
  unsigned flags;
  void (*parsed)(void* row);  // Called right after the field came from JSON; may be null.
};

namespace internal {

template <typename Member>
struct MemberTraits;
template <typename RowType, typename FieldType>
struct MemberTraits<FieldType RowType::*> {
  using Row = RowType;
  using Field = FieldType;
};

template <auto kMember>
using FieldOf = typename MemberTraits<decltype(kMember)>::Field;

template <auto kMember>
void* FieldAddress(void* row) {
  using Row = typename MemberTraits<decltype(kMember)>::Row;
  return &(static_cast<Row*>(row)->*kMember);
}

}  // namespace internal

// One column: Column<&tblDevice::id>("id", kKey | kRequired). `parsed` is a hook.
template <auto kMember>
constexpr ColumnDef Column(std::string_view name, unsigned flags = kPlain,
                           void (*parsed)(void*) = nullptr) {
  return {name, kDefaultCodec<internal::FieldOf<kMember>>->untyped(),
          &internal::FieldAddress<kMember>, flags, parsed};
}

// The same with a codec of its own: Column<&tblDevice::is_master>("is_master", kStrictFlag16).
template <auto kMember>
constexpr ColumnDef Column(std::string_view name,
                           const TypedCodec<internal::FieldOf<kMember>>& codec,
                           unsigned flags = kPlain) {
  return {name, codec.untyped(), &internal::FieldAddress<kMember>, flags, nullptr};
}

// The hook that calls a method of the record.
template <typename Record, auto kMethod>
void OnParsed(void* row) {
  (static_cast<Record*>(static_cast<typename Record::Row*>(row))->*kMethod)();
}

inline constexpr std::size_t kMaxColumns = 32;

// Some columns, in an order of their own. They are still told once: a second array takes its
// elements from the first, constexpr ColumnDef kReported[] = {kColumns[2], ...}.
class Columns {
 public:
  template <std::size_t kCount>
  constexpr Columns(const ColumnDef (&columns)[kCount]) : first_(columns), count_(kCount) {
    static_assert(kCount <= kMaxColumns);
  }

  constexpr const ColumnDef* begin() const { return first_; }
  constexpr const ColumnDef* end() const { return first_ + count_; }
  constexpr std::size_t size() const { return count_; }

 private:
  const ColumnDef* first_;
  std::size_t count_;
};

// The function that answers a document as a table, with the columns c0, c1, ...
inline constexpr char kDocumentTable[] = "wexpol_document";

// What a table deviates in. Most tables carry none of these.
struct Deviations {
  // Which rows are selected: " WHERE ..." with parameters of its own.
  const char* condition = "";
  // The literal insert. The bound values stay one per column that is not kAssignedByDb.
  const char* insert = nullptr;
  // The record class parses or inserts in its own way, so synchronisation must call it.
  bool through_record = false;
  // Finds the record or the array of records in a document whose root is an object.
  const rapidjson::Value& (*unwrap)(const rapidjson::Value& root) = nullptr;
};

// The names, the columns and the fixed SQL of one table. Column order is the order of the column
// list, of the insert, of the row as read and of the JSON. A table lives as long as the program.
class Table {
 public:
  Table(const char* name, const char* json_key, Columns columns, Deviations deviations = {});

  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  const char* name() const { return name_; }
  const char* json_key() const { return json_key_; }
  const Columns& columns() const { return columns_; }
  const ColumnDef* key() const { return key_; }  // Null when no column is the key.
  const Deviations& deviations() const { return deviations_; }

  // The statements, which live as long as the table.
  Sql insert() const { return Sql(insert_); }
  Sql select() const { return Sql(select_); }
  // Inserts all rows of a table function's DocumentRows; only where TakesDocuments().
  Sql insert_document() const { return Sql(insert_document_); }
  // Whether the records of a document may go into the table without a record class.
  bool TakesDocuments() const { return !insert_document_.empty(); }
  // Every row of the table.
  Sql clear() const { return Sql(clear_); }
  // The row of the key; all rows where there is no key.
  Sql select_by_key() const { return Sql(select_by_key_); }
  Sql delete_by_key() const { return Sql(delete_by_key_); }

 private:
  const char* name_;
  const char* json_key_;
  Columns columns_;
  Deviations deviations_;
  const ColumnDef* key_ = nullptr;
  std::string insert_;
  std::string insert_document_;
  std::string select_;
  std::string clear_;
  std::string select_by_key_;
  std::string delete_by_key_;
};

// The member of `root` that the first of the names finds, else `root` itself.
const rapidjson::Value& MemberOrSelf(const rapidjson::Value& root,
                                     std::initializer_list<const char*> names);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_TABLE_H_
