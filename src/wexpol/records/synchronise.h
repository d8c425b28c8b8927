// From the console's documents to rows, the same for every table.

#ifndef WEXPOL_RECORDS_SYNCHRONISE_H_
#define WEXPOL_RECORDS_SYNCHRONISE_H_

#include <rapidjson/fwd.h>
#include <sqlite3.h>

#include <string>

#include "wexpol/records/document.h"
#include "wexpol/records/error_object.h"
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
[[nodiscard]] bool AddDocument(sqlite3* db, const RecordClass& record_class, const char* json,
                               std::string& error);

// Empties the table, whatever comes of that, and adds the document: the table holds what the
// document holds, or nothing when the text is no JSON. Refused when emptying it has made the engine
// end the caller's transaction.
[[nodiscard]] bool ReplaceTable(sqlite3* db, const RecordClass& record_class, const char* json,
                                std::string& error);

[[nodiscard]] bool ClearTable(sqlite3* db, const Table& table);

// Parses the text of one object into `record`, which may be null, by `parse` and adds it. Answers
// the engine's code, or kNoCode for a fault of the document.
template <typename Record, typename Parse>
[[nodiscard]] int AddObject(sqlite3* db, Record* record, const char* json, Parse&& parse) {
  Document document;
  if (!record || !document.Parse(json) || !parse(document.root())) return kNoCode;
  return record->Add2DB(db);
}

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_SYNCHRONISE_H_
