// The values of a row, told and masked.

#ifndef WEXPOL_WEXPOLCTL_ROW_CELLS_H_
#define WEXPOL_WEXPOLCTL_ROW_CELLS_H_

#include <sqlite3.h>

#include <string>
#include <vector>

#include "tools/wexpolctl/report.h"

namespace wexpolctl {

// The value as it may be seen: a secret as its mask. `columns` are the names of the row's columns
// from the first on.
Cell ShownCell(sqlite3_stmt* row, int column, const std::vector<std::string>& columns);

// The value and its type as one text, secrets included, to compare by.
std::string ComparedValue(sqlite3_stmt* row, int column);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_ROW_CELLS_H_
