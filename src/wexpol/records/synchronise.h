// From the console's documents to rows and from rows to lists, the same for every table.

#ifndef WEXPOL_RECORDS_SYNCHRONISE_H_
#define WEXPOL_RECORDS_SYNCHRONISE_H_

#include <rapidjson/fwd.h>
#include <sqlite3.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "wexpol/records/error_object.h"
#include "wexpol/records/statement.h"
#include "wexpol/records/table.h"

namespace wexpol {

// What synchronisation needs to know of a record class.
struct RecordClass {
  const Table& (*table)();
  void* (*create)();
  void (*destroy)(void* record);
  void* (*row)(void* record);
  bool (*parse)(void* record, const rapidjson::Value& value);
  int (*add)(const void* record, sqlite3* db);
};

template <typename Record>
inline constexpr RecordClass kRecordClass = {
    &Record::Table,
    []() -> void* { return new Record; },
    [](void* record) { delete static_cast<Record*>(record); },
    [](void* record) -> void* {
      return static_cast<typename Record::Row*>(static_cast<Record*>(record));
    },
    [](void* record, const rapidjson::Value& value) {
      return static_cast<Record*>(record)->ParseJson(value);
    },
    [](const void* record, sqlite3* db) { return static_cast<const Record*>(record)->Add2DB(db); },
};

// Inserts every record of the document; rows that exist are not updated. The first record that
// fails ends it: the ones before stay, and `error` receives the error object.
bool AddDocument(sqlite3* db, const RecordClass& record_class, const char* json,
                 std::string& error);

// Empties the table, whatever comes of that, and adds the document: the table holds what the
// document holds, or nothing when the text is no JSON.
bool ReplaceTable(sqlite3* db, const RecordClass& record_class, const char* json,
                  std::string& error);

bool ClearTable(sqlite3* db, const Table& table);

// Whether a caller's text may stand in a statement as the name of a column.
bool IsIdentifier(const char* text);

// The select of a list: all rows, or where `column` is given, those in which it has the value. A
// column that is no plain identifier gets the engine's answer for an unknown one. `order`
// may say what the rows are ordered by.
class ListStatement {
 public:
  ListStatement(sqlite3* db, const Table& table, const char* column, std::int64_t value,
                const char* order = nullptr);
  bool Row();
  sqlite3_stmt* get() const { return select_.get(); }
  // After the last row: whether it was the last one; else `error` receives the error object.
  bool Finish(std::string& error) const;

 private:
  sqlite3* db_;
  const char* unknown_;  // Null for a column that may stand in a statement.
  Statement select_;
  int code_ = SQLITE_OK;
};

// Appends the rows as records, which are the caller's to delete; also those read before a failure.
template <typename Record>
bool ListRecords(sqlite3* db, std::list<Record*>& out, const char* column, std::int64_t value,
                 std::string& error, const char* order = nullptr) {
  ListStatement select(db, Record::Table(), column, value, order);
  while (select.Row()) {
    auto record = std::make_unique<Record>();
    record->CopyFromDB(select.get());
    out.push_back(nullptr);
    out.back() = record.release();
  }
  return select.Finish(error);
}

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_SYNCHRONISE_H_
