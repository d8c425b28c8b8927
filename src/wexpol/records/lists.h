// From rows to lists of records.

#ifndef WEXPOL_RECORDS_LISTS_H_
#define WEXPOL_RECORDS_LISTS_H_

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "wexpol/records/statement.h"
#include "wexpol/records/table.h"

namespace wexpol {

// Whether a caller's text may stand in a statement as the name of a column.
bool IsIdentifier(const char* text);

// The select of a list: all rows, or where `column` is given, those in which it has the value. A
// column that is no plain identifier gets the engine's answer for an unknown one. `order`
// may say what the rows are ordered by.
class ListStatement {
 public:
  ListStatement(sqlite3* db, const Table& table, const char* column, std::int64_t value,
                const char* order = nullptr);
  // Steps, and says whether there is a row.
  [[nodiscard]] bool StepRow();
  sqlite3_stmt* get() const { return select_.get(); }
  // After the last row: whether it was the last one; else `error` receives the error object.
  [[nodiscard]] bool Finish(std::string& error) const;

 private:
  sqlite3* db_;
  const char* unknown_;  // Null for a column that may stand in a statement.
  Statement select_;
  int code_ = SQLITE_OK;
};

// Appends the rows as records, which are the caller's to delete; also those read before a failure.
template <typename Record>
[[nodiscard]] bool ListRecords(sqlite3* db, std::list<Record*>& out, const char* column,
                               std::int64_t value, std::string& error,
                               const char* order = nullptr) {
  ListStatement select(db, Record::Table(), column, value, order);
  while (select.StepRow()) {
    auto record = std::make_unique<Record>();
    record->CopyFromDB(select.get());
    out.push_back(nullptr);  // Before the record is let go of: this may fail.
    out.back() = record.release();
  }
  return select.Finish(error);
}

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_LISTS_H_
