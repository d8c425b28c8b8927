// Questions that are one statement: QueryInt(db, "SELECT id FROM accounts").value_or(-1).

#ifndef WEXPOL_RECORDS_QUERY_H_
#define WEXPOL_RECORDS_QUERY_H_

#include <cstdint>
#include <optional>
#include <string>

#include "wexpol/records/error_object.h"
#include "wexpol/records/statement.h"
#include "wexpol/records/text.h"

namespace wexpol {

// Column 0 of the first row. Nothing when the statement fails, there is no row or the value is
// NULL.
template <typename... Args>
std::optional<std::int32_t> QueryInt(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  if (!select.Row() || select.IsNull(0)) return std::nullopt;
  return select.Int(0);
}

template <typename... Args>
std::optional<std::int64_t> QueryInt64(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  if (!select.Row() || select.IsNull(0)) return std::nullopt;
  return select.Int64(0);
}

// The same of a text; null for nothing.
template <typename... Args>
Text QueryText(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  return select.Row() ? Text(select.Text(0)) : Text();
}

// The same into `out`, which is left alone, and false answered, when there is nothing.
template <typename... Args>
bool QueryText(std::string& out, sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  const char* text = select.Row() ? select.Text(0) : nullptr;
  if (text) out = text;
  return text != nullptr;
}

// Whether there is a row.
template <typename... Args>
bool QueryExists(sqlite3* db, Sql sql, const Args&... args) {
  return Statement(db, sql, args...).Row();
}

// The first row into `record`, which is left alone when there is none. The columns are those of the
// record's table, in their order.
template <typename Record, typename... Args>
bool QueryRecord(Record& record, sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  if (!select.Row()) return false;
  record.CopyFromDB(select.get());
  return true;
}

// Runs a statement that answers no rows.
template <typename... Args>
bool Execute(sqlite3* db, Sql sql, const Args&... args) {
  return Statement(db, sql, args...).Done();
}

// As QueryRecord, but a failure of the engine, unlike a missing row, leaves the error object.
template <typename Record, typename... Args>
bool ReadRecord(Record& record, std::string& error, sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  const int code = select.Step();
  if (code == SQLITE_ROW) {
    record.CopyFromDB(select.get());
  } else if (code != SQLITE_DONE) {
    error = EngineErrorObject(db, code);
  }
  return code == SQLITE_ROW;
}

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_QUERY_H_
