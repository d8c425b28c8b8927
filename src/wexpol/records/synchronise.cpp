#include "wexpol/records/synchronise.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "wexpol/records/document.h"
#include "wexpol/records/row.h"

namespace wexpol {
namespace {

using RecordPointer = std::unique_ptr<void, void (*)(void*)>;

// The way of one document into its table. The insert is prepared once; values go straight from the
// document into it where the record class has no say.
class Insertion {
 public:
  Insertion(sqlite3* db, const RecordClass& record_class)
      : db_(db),
        class_(record_class),
        table_(record_class.table()),
        defaults_(record_class.create(), record_class.destroy) {
    if (table_.deviations().through_record || table_.has_hooks()) return;
    insert_.emplace(db, table_.insert());
  }

  bool Add(const rapidjson::Value& value, std::string& error) {
    std::optional<int> code = AddStraight(value);
    if (!code) code = AddThroughRecord(value);
    if (code == SQLITE_DONE) return true;
    error = FailureObject(db_, *code);
    return false;
  }

 private:
  // Nothing when the record must take the long way, which knows what is wrong with it.
  std::optional<int> AddStraight(const rapidjson::Value& value) {
    if (!insert_ || !insert_->ok()) return std::nullopt;
    if (!BindParsedRow(table_, class_.row(defaults_.get()), value, *insert_)) {
      insert_.reset();
      return std::nullopt;
    }
    const int code = insert_->Step();
    insert_->Reset();
    return code;
  }

  int AddThroughRecord(const rapidjson::Value& value) {
    const RecordPointer record(class_.create(), class_.destroy);
    if (!value.IsObject() || !class_.parse(record.get(), value)) return kNoCode;
    return class_.add(record.get(), db_);
  }

  sqlite3* db_;
  const RecordClass& class_;
  const Table& table_;
  const RecordPointer defaults_;
  std::optional<Statement> insert_;
};

}  // namespace

bool AddDocument(sqlite3* db, const RecordClass& record_class, const char* json,
                 std::string& error) {
  if (!db) {  // Also a document of no records fails on a closed session.
    error = FailureObject(db, SQLITE_MISUSE);
    return false;
  }
  Document document;
  Records records;
  if (!document.Parse(json) || !FindRecords(record_class.table(), document.root(), records)) {
    error = FailureObject(db, kNoCode);
    return false;
  }
  Insertion insertion(db, record_class);
  return std::all_of(records.first, records.first + records.count,
                     [&](const rapidjson::Value& value) { return insertion.Add(value, error); });
}

bool ReplaceTable(sqlite3* db, const RecordClass& record_class, const char* json,
                  std::string& error) {
  static_cast<void>(ClearTable(db, record_class.table()));
  return AddDocument(db, record_class, json, error);
}

bool ClearTable(sqlite3* db, const Table& table) { return Statement(db, table.clear()).StepDone(); }

}  // namespace wexpol
