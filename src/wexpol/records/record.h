// What every record class shares.

#ifndef WEXPOL_RECORDS_RECORD_H_
#define WEXPOL_RECORDS_RECORD_H_

#include <rapidjson/fwd.h>

#include <string>

#include "wexpol/platform/export.h"
#include "wexpol/records/text.h"

struct sqlite3;
struct sqlite3_stmt;

namespace wexpol {

class Table;

// The operations, written once for all tables. `row` is the address of the row structure that the
// columns of the table point into.
[[nodiscard]] WEXPOL_API bool ParseRow(const Table& table, void* row, const rapidjson::Value& value,
                                       bool strict);
WEXPOL_API void GenerateRow(const Table& table, const void* row, std::string& out);
[[nodiscard]] WEXPOL_API int AddRow(const Table& table, const void* row, sqlite3* db);
[[nodiscard]] WEXPOL_API int UpdateRow(const Table& table, const void* row, sqlite3* db);
[[nodiscard]] WEXPOL_API int DeleteRow(const Table& table, const void* row, sqlite3* db);
WEXPOL_API void CopyRow(const Table& table, void* row, sqlite3_stmt* statement);
WEXPOL_API void ReleaseRow(const Table& table, void* row);

// The base of a record class: class CDevice : public Record<CDevice, tblDevice>. Derived gives
// `static const Table& Table()`. A record that deviates in an operation declares it again;
// there are no virtual operations.
//
// The writing operations return SQLite's step result: success is SQLITE_DONE (101).
template <typename Derived, typename RowType>
class Record : public RowType {
 public:
  using Row = RowType;

  // Every field takes the value that the row structure declares for it. With `free` false the
  // texts are let go of without being freed: the caller took the pointers, to delete[] them.
  void Reset(bool free) {
    if (!free) ReleaseRow(Derived::Table(), &row());
    row() = Row();
  }

  // Takes a JSON object. False when a required key is missing or of the wrong type. Any other key
  // that is missing or of the wrong type leaves its field as Reset does.
  bool ParseJson(const rapidjson::Value& json) {
    static_cast<Derived*>(this)->Reset(true);
    return ParseRow(Derived::Table(), &row(), json, false);
  }

  // Appends the fields that are not null as one JSON object.
  void GenerateJson(std::string& out) const { GenerateRow(Derived::Table(), &row(), out); }

  int Add2DB(sqlite3* db) const { return AddRow(Derived::Table(), &row(), db); }

  // Writes the fields that are not null; it cannot clear a column.
  int UpdateDB(sqlite3* db) const { return UpdateRow(Derived::Table(), &row(), db); }

  // Throws the SQLite code, an int, when the key cannot be bound.
  int DelFromDB(sqlite3* db) { return DeleteRow(Derived::Table(), &row(), db); }

  // Takes the current row of a select of the column list.
  void CopyFromDB(sqlite3_stmt* statement) {
    static_cast<Derived*>(this)->Reset(true);
    CopyRow(Derived::Table(), &row(), statement);
  }

 protected:
  Row& row() { return *this; }
  const Row& row() const { return *this; }
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_RECORD_H_
