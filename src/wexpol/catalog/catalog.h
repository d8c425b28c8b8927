// Every table that the library works on, by its record class.

#ifndef WEXPOL_CATALOG_CATALOG_H_
#define WEXPOL_CATALOG_CATALOG_H_

#include <span>
#include <string_view>

#include "wexpol/records/synchronise.h"

namespace wexpol {

// Those that the console fills, in an order in which what points at a row comes after it.
std::span<const RecordClass* const> ConsoleTables();

// The same, followed by those that only this computer writes.
std::span<const RecordClass* const> AllTables();

// Null when there is no table of that name.
const RecordClass* FindTable(std::string_view name);

// Whether every table is in the file, with the columns of its record class.
bool HasAllTables(sqlite3* db);

}  // namespace wexpol

#endif  // WEXPOL_CATALOG_CATALOG_H_
