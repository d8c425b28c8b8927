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

// Whether a record is taken although the member of this column, null where there is none, could not
// be. A column with one of the `required` flags must be there.
bool MayLack(const ColumnDef& column, const rapidjson::Value* member, unsigned required);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_ROW_H_
