// The row operations that other parts of the library build on.

#ifndef WEXPOL_RECORDS_ROW_H_
#define WEXPOL_RECORDS_ROW_H_

#include <string>

#include "wexpol/records/record.h"
#include "wexpol/records/table.h"

namespace wexpol {

// ParseRow and GenerateRow over columns in an order of their own. A column with one of the
// `required` flags must be there.
[[nodiscard]] bool ParseColumns(const Columns& columns, void* row, const rapidjson::Value& value,
                                unsigned required);
void GenerateColumns(const Columns& columns, const void* row, std::string& out);

// Binds the values of an insert.
void BindRow(const Table& table, const void* row, Statement& insert);

// Binds the values of an insert straight from a JSON object, as if it had been parsed into a record
// whose fields were those of `defaults`. False, and some values bound, when that parse or a bind
// would fail. Not for tables with hooks.
[[nodiscard]] bool BindParsedRow(const Table& table, const void* defaults,
                                 const rapidjson::Value& value, Statement& insert);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_ROW_H_
