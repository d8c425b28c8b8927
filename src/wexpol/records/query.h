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
[[nodiscard]] std::optional<std::int32_t> QueryInt(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  if (!select.StepRow() || select.IsNull(0)) return std::nullopt;
  return select.Int(0);
}

template <typename... Args>
[[nodiscard]] std::optional<std::int64_t> QueryInt64(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  if (!select.StepRow() || select.IsNull(0)) return std::nullopt;
  return select.Int64(0);
}

// The same of a text; null for nothing.
template <typename... Args>
[[nodiscard]] Text QueryText(sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  return select.StepRow() ? Text(select.Text(0)) : Text();
}

// The same into `out`, which is left alone, and false answered, when there is nothing.
template <typename... Args>
[[nodiscard]] bool QueryText(std::string& out, sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  const char* text = select.StepRow() ? select.Text(0) : nullptr;
  if (text) out = text;
  return text != nullptr;
}

// Whether there is a row.
template <typename... Args>
[[nodiscard]] bool QueryExists(sqlite3* db, Sql sql, const Args&... args) {
  return Statement(db, sql, args...).StepRow();
}

// The first row into `record`, which is left alone when there is none: SQLITE_ROW, SQLITE_DONE or
// what went wrong. The columns are those of the record's table, in their order.
template <typename Record, typename... Args>
[[nodiscard]] int FetchRecord(Record& record, sqlite3* db, Sql sql, const Args&... args) {
  Statement select(db, sql, args...);
  const int code = select.Step();
  if (code == SQLITE_ROW) record.CopyFromDB(select.get());
  return code;
}

// The same, answering whether there is a row.
template <typename Record, typename... Args>
[[nodiscard]] bool QueryRecord(Record& record, sqlite3* db, Sql sql, const Args&... args) {
  return FetchRecord(record, db, sql, args...) == SQLITE_ROW;
}

// The same, and a failure of the engine, unlike a missing row, leaves the error object.
template <typename Record, typename... Args>
[[nodiscard]] bool ReadRecord(Record& record, std::string& error, sqlite3* db, Sql sql,
                              const Args&... args) {
  const int code = FetchRecord(record, db, sql, args...);
  if (code != SQLITE_ROW && code != SQLITE_DONE) error = FailureObject(db, code);
  return code == SQLITE_ROW;
}

// Runs a statement that answers no rows.
template <typename... Args>
[[nodiscard]] bool Execute(sqlite3* db, Sql sql, const Args&... args) {
  return Statement(db, sql, args...).StepDone();
}

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_QUERY_H_
