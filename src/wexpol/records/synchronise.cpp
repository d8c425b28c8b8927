#include "wexpol/records/synchronise.h"

#include <memory>
#include <optional>

#include "wexpol/records/document_table.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {
namespace {

using RecordPointer = std::unique_ptr<void, void (*)(void*)>;

// Whether a conflict over a row would end the transaction of the caller, also where a later fault
// of the text is to be told instead.
bool RollsBack(sqlite3* db, const Table& table) {
  return QueryExists(db, "SELECT 1 FROM sqlite_schema WHERE tbl_name=? AND sql LIKE '%ROLLBACK%'",
                     table.name());
}

// All records by one statement, which answers SQLITE_DONE. Anything else is taken back: nothing is
// answered when the records are to be added one by one instead; a code when that is no use, for the
// wait was in vain or the transaction that the records belong to is gone.
std::optional<int> AddWhole(sqlite3* db, const RecordClass& record_class, const char* json) {
  const Table& table = record_class.table();
  if (!json || !table.TakesDocuments() || !StatementCache::Of(db)) return std::nullopt;
  const RecordPointer defaults(record_class.create(), record_class.destroy);
  DocumentRows rows(table, record_class.row(defaults.get()), json);
  if (!rows.Start()) return std::nullopt;
  if (!sqlite3_get_autocommit(db) && RollsBack(db, table)) return std::nullopt;

  Savepoint savepoint(db);
  int code = savepoint.code();
  if (code == SQLITE_OK) {
    Statement insert(db, table.insert_document());
    BindRows(insert, 1, rows);
    code = insert.Step();
  }
  if (code == SQLITE_DONE) code = savepoint.Commit();
  const bool settled = code == SQLITE_DONE || code == SQLITE_BUSY || savepoint.LostTransaction();
  return settled ? std::optional(code) : std::nullopt;
}

// One record after another by its class, up to the first that fails: SQLITE_DONE, what went wrong
// or kNoCode for a fault of the document. `refusal` is what the engine says of any.
int AddEach(sqlite3* db, const RecordClass& record_class, const char* json,
            std::optional<int> refusal) {
  Document document;
  Records records;
  if (!document.Parse(json) || !FindRecords(record_class.table(), document.root(), records)) {
    return kNoCode;
  }
  const RecordPointer record(record_class.create(), record_class.destroy);
  for (std::size_t i = 0; i < records.count; ++i) {
    const rapidjson::Value& value = records.first[i];
    if (!value.IsObject() || !record_class.parse(record.get(), value)) return kNoCode;
    const int code = refusal ? *refusal : record_class.add(record.get(), db);
    if (code != SQLITE_DONE) return code;
  }
  return db ? SQLITE_DONE : SQLITE_MISUSE;  // Also a document of no records.
}

int Clear(sqlite3* db, const Table& table) { return Statement(db, table.clear()).Step(); }

}  // namespace

bool AddDocument(sqlite3* db, const RecordClass& record_class, const char* json,
                 std::string& error) {
  std::optional<int> code = AddWhole(db, record_class, json);
  if (code != SQLITE_DONE) code = AddEach(db, record_class, json, code);
  if (code != SQLITE_DONE) error = FailureObject(db, *code);
  return code == SQLITE_DONE;
}

bool ReplaceTable(sqlite3* db, const RecordClass& record_class, const char* json,
                  std::string& error) {
  const bool in_transaction = db && !sqlite3_get_autocommit(db);
  const int code = Clear(db, record_class.table());
  if (!in_transaction || !sqlite3_get_autocommit(db)) {
    return AddDocument(db, record_class, json, error);
  }
  // The engine has ended the transaction that the records belong to.
  error = FailureObject(db, code);
  return false;
}

bool ClearTable(sqlite3* db, const Table& table) { return Clear(db, table) == SQLITE_DONE; }

}  // namespace wexpol
