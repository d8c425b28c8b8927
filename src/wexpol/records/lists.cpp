#include "wexpol/records/lists.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "wexpol/records/error_object.h"

namespace wexpol {
namespace {

Statement Select(sqlite3* db, const Table& table, const char* column, std::int64_t value,
                 const char* order) {
  if (!column && !order) return {db, table.select()};
  std::string sql = table.select().text();
  if (column) sql.append(" WHERE ").append(column).append("=?");
  if (order) sql.append(" ORDER BY ").append(order);
  return column ? Statement::Composed(db, sql, value) : Statement::Composed(db, sql);
}

}  // namespace

bool IsIdentifier(const char* text) {
  const auto is_letter = [](char c) {
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
  };
  const auto is_digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)); };
  if (!is_letter(*text)) return false;
  const std::string_view rest(text + 1);
  return std::all_of(rest.begin(), rest.end(), [&](char c) { return is_letter(c) || is_digit(c); });
}

ListStatement::ListStatement(sqlite3* db, const Table& table, const char* column,
                             std::int64_t value, const char* order)
    : db_(db),
      unknown_(column && !IsIdentifier(column) ? column : nullptr),
      select_(Select(db, table, unknown_ ? nullptr : column, value, order)) {}

bool ListStatement::StepRow() {
  code_ = unknown_ ? SQLITE_ERROR : select_.Step();
  return code_ == SQLITE_ROW;
}

bool ListStatement::Finish(std::string& error) const {
  if (code_ == SQLITE_DONE) return true;
  error = unknown_ ? ErrorObject(code_, std::string("no such column: ") + unknown_)
                   : FailureObject(db_, code_);
  return false;
}

}  // namespace wexpol
