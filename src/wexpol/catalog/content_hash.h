// One short text that says whether two computers hold the same rows.

#ifndef WEXPOL_CATALOG_CONTENT_HASH_H_
#define WEXPOL_CATALOG_CONTENT_HASH_H_

#include <sqlite3.h>

#include <string>
#include <vector>

#include "wexpol/records/table.h"

namespace wexpol {

// The columns that a document can fill, in the order of the table.
std::vector<const ColumnDef*> DocumentColumns(const Table& table);

// The digest of a table's rows over those columns, as 40 hexadecimal digits: the same on every
// machine and in whatever order the rows lie. It compares contents and protects nothing. False, and
// `hash` untouched, when the table cannot be read.
bool ContentHash(sqlite3* db, const Table& table, std::string& hash);

}  // namespace wexpol

#endif  // WEXPOL_CATALOG_CONTENT_HASH_H_
