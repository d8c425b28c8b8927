#include "tools/wexpolctl/row_cells.h"

#include <algorithm>

#include "tools/wexpolctl/secrets.h"
#include "wexpol/platform/hex.h"

namespace wexpolctl {
namespace {

Cell CellOf(sqlite3_stmt* row, int column) {
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_NULL:
      return Nothing();
    case SQLITE_INTEGER:
      return Number(sqlite3_column_int64(row, column));
    case SQLITE_BLOB: {
      std::string digits;
      wexpol::AppendHex(static_cast<const std::uint8_t*>(sqlite3_column_blob(row, column)),
                        static_cast<std::size_t>(sqlite3_column_bytes(row, column)), digits);
      return Text(digits);
    }
    default:
      return Text(reinterpret_cast<const char*>(sqlite3_column_text(row, column)));
  }
}

// A value that is there but is not to be seen.
bool IsHidden(sqlite3_stmt* row, int column, const std::vector<std::string>& columns) {
  const std::string& name = columns[static_cast<std::size_t>(column)];
  if (sqlite3_column_type(row, column) == SQLITE_NULL) return false;
  if (IsSecretColumn(name)) return sqlite3_column_bytes(row, column) > 0;
  const auto key = std::find(columns.begin(), columns.end(), "key");
  if (name != "value" || key == columns.end()) return false;
  const auto* text = sqlite3_column_text(row, static_cast<int>(key - columns.begin()));
  return text && IsSecretKey(reinterpret_cast<const char*>(text));
}

}  // namespace

Cell ShownCell(sqlite3_stmt* row, int column, const std::vector<std::string>& columns) {
  return IsHidden(row, column, columns) ? Text(kMask) : CellOf(row, column);
}

std::string ComparedValue(sqlite3_stmt* row, int column) {
  const int type = sqlite3_column_type(row, column);
  if (type != SQLITE_TEXT && type != SQLITE_BLOB) return CellOf(row, column).json;
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(row, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
  return std::string(type == SQLITE_TEXT ? "'" : "x").append(bytes ? bytes : "", size);
}

}  // namespace wexpolctl
