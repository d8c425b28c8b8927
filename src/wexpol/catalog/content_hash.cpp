#include "wexpol/catalog/content_hash.h"

#include "wexpol/platform/hash.h"
#include "wexpol/records/statement.h"

namespace wexpol {
namespace {

// Every row as one text: its values as SQL writes them, which tells 1, '1' and NULL apart.
std::string RowsSql(const Table& table) {
  std::string values;
  for (const ColumnDef* column : DocumentColumns(table)) {
    if (!values.empty()) values += "||','||";
    values.append("quote(").append(column->name).append(")");
  }
  return "SELECT " + values + " FROM " + table.name() + " ORDER BY 1";
}

std::string HexDigits(const Sha1Digest& digest) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : digest) text += {kDigits[byte >> 4], kDigits[byte & 15]};
  return text;
}

}  // namespace

std::vector<const ColumnDef*> DocumentColumns(const Table& table) {
  std::vector<const ColumnDef*> columns;
  for (const ColumnDef& column : table.columns()) {
    // A key that is not reported does not come by a document, either.
    const bool hidden_key = (column.flags & kKey) && (column.flags & kNotReported);
    if (!(column.flags & kAssignedByDb) && !hidden_key) columns.push_back(&column);
  }
  return columns;
}

bool ContentHash(sqlite3* db, const Table& table, std::string& hash) {
  auto select = Statement::Composed(db, RowsSql(table));
  std::string rows;  // No larger than the document that they came by.
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    const char* row = select.Text(0);
    if (!row) return false;
    rows.append(row, static_cast<std::size_t>(sqlite3_column_bytes(select.get(), 0))) += '\n';
  }
  Sha1Digest digest;
  if (code != SQLITE_DONE || !Sha1(rows.data(), rows.size(), &digest)) return false;
  hash = HexDigits(digest);
  return true;
}

}  // namespace wexpol
