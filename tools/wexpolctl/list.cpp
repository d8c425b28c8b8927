// wexpolctl list: the rows of a table.

#include <algorithm>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/row_cells.h"
#include "tools/wexpolctl/secrets.h"
#include "wexpol/records/statement.h"

namespace wexpolctl {
namespace {

template <typename Range, typename Value>
bool Contains(const Range& range, const Value& value) {
  return std::find(range.begin(), range.end(), value) != range.end();
}

// Adds "COLUMN=VALUE" to a condition, its value to those to bind. A blob is told in hexadecimal
// digits.
void AddCondition(const std::string& text, const std::vector<std::string>& columns,
                  std::string& condition, std::vector<std::string>& values) {
  const std::size_t at = text.find('=');
  const std::string column = text.substr(0, at);
  if (at == text.npos || !Contains(columns, column)) {
    throw Failure{kUsage, "The table has no column '" + column + "'.",
                  "Write a condition as COLUMN=VALUE, or COLUMN=NULL."};
  }
  if (IsSecretColumn(column)) {
    throw Failure{kUsage, "The column " + column + " holds a secret and cannot be asked for.", ""};
  }
  const std::string name = Quoted(column);
  condition += condition.empty() ? " WHERE " : " AND ";
  if (text.substr(at + 1) == "NULL") {
    condition += name + " IS NULL";
    return;
  }
  values.push_back(text.substr(at + 1));
  const std::string value = "?" + std::to_string(values.size());
  condition += "(" + name + "=" + value + " OR (typeof(" + name + ")='blob' AND hex(" + name +
               ")=upper(" + value + ")))";
}

ExitCode List(Call& call) {
  Database database(call.database);
  sqlite3* db = database.handle();
  const std::string table = call.options.Text("TABLE");
  if (!Contains(TableNames(db, true), table)) {
    throw Failure{kUsage, "There is no table '" + table + "'.",
                  "The tables are shown by 'wexpolctl tables'."};
  }
  const std::vector<std::string> columns = ColumnNames(db, table);
  std::string condition;
  std::vector<std::string> values;
  for (const std::string& text : call.options.Texts("--where")) {
    AddCondition(text, columns, condition, values);
  }
  auto select = wexpol::Statement::Composed(
      db, "SELECT * FROM " + Quoted(table) + condition + " LIMIT " +
              std::to_string(call.options.Number("--limit").value_or(-1)));
  for (std::size_t i = 0; i < values.size(); ++i) {
    select.Bind(static_cast<int>(i + 1), std::string_view(values[i]));
  }

  call.report.Add("table", Text(table));
  Listing& listing = call.report.AddListing("rows", columns);
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    std::vector<Cell> cells;
    cells.reserve(columns.size());
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
      cells.push_back(ShownCell(select.get(), i, columns));
    }
    listing.Add(std::move(cells));
  }
  if (code != SQLITE_DONE) {
    throw Failure{kFinding, table + " cannot be read to its end: " + sqlite3_errmsg(db) + ".",
                  "Check the file with 'wexpolctl check'."};
  }
  if (listing.empty()) call.report.AddLine("There are no such rows.");
  return kDone;
}

}  // namespace

Command ListCommand() {
  return {"list",
          "Show the rows of a table; secrets are masked",
          {{"TABLE", Option::kText, "The table", true},
           {"--where COLUMN=VALUE", Option::kTexts, "Only rows with this value"},
           {"--limit NUMBER", Option::kNumber, "At most so many rows"}},
          &List};
}

}  // namespace wexpolctl
