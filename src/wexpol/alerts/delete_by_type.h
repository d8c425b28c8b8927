// How the alert tables are emptied by type.

#ifndef WEXPOL_ALERTS_DELETE_BY_TYPE_H_
#define WEXPOL_ALERTS_DELETE_BY_TYPE_H_

#include "wexpol/records/statement.h"
#include "wexpol/records/table.h"

namespace wexpol {

// Deletes the rows of a type by `of_type`; a type below 1 stands for all. The SQLite step result.
inline int DeleteRowsOfType(sqlite3* db, const Table& table, Sql of_type, long type) {
  return type < 1 ? Statement(db, table.clear()).Step() : Statement(db, of_type, type).Step();
}

}  // namespace wexpol

#endif  // WEXPOL_ALERTS_DELETE_BY_TYPE_H_
