#include "tools/wexpolctl/rehearsal.h"

#include <sqlite3.h>

#include <map>
#include <utility>

#include "tools/wexpolctl/command.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/row_cells.h"
#include "wexpol/catalog/content_hash.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

constexpr char kBefore[] = "before";  // The schema that keeps what the file holds.

[[noreturn]] void ThrowUnreadable(const std::string& why) {
  throw Failure{kFinding, "The file cannot be copied to try it: " + why + ".",
                "Check the file with 'wexpolctl check'."};
}

// Loads one copy of the file into a schema of the connection.
void Load(sqlite3* file, sqlite3* copy, const char* schema) {
  constexpr std::size_t kFormatVersions = 18;  // In the header: 1 for reading and for writing
  sqlite3_int64 size = 0;                      // stands for a file without a write-ahead log.
  unsigned char* pages = sqlite3_serialize(file, "main", &size, 0);
  if (!pages || size == 0) ThrowUnreadable(sqlite3_errmsg(file));
  pages[kFormatVersions] = pages[kFormatVersions + 1] = 1;
  if (sqlite3_deserialize(copy, schema, pages, size, size,
                          SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE) !=
      SQLITE_OK) {
    ThrowUnreadable(sqlite3_errmsg(copy));
  }
}

struct Row {
  std::vector<std::string> values;  // To compare by.
  std::vector<Cell> cells;
};

// The rows, with how often each occurs, that one schema's table has and the other's lacks.
std::multimap<std::string, Row> OnlyIn(sqlite3* db, const std::string& schema,
                                       const std::string& other, const std::string& table,
                                       const std::vector<std::string>& columns, std::size_t key) {
  std::string list;
  for (const std::string& column : columns) list += Quoted(column) + ',';
  const auto counted = [&](const std::string& from) {
    return "SELECT " + list + "count(*) FROM " + from + '.' + Quoted(table) + " GROUP BY " +
           list.substr(0, list.size() - 1);
  };
  auto select = wexpol::Statement::Composed(db, counted(schema) + " EXCEPT " + counted(other));
  std::multimap<std::string, Row> rows;
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    Row row;
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
      row.values.push_back(ComparedValue(select.get(), i));
      row.cells.push_back(ShownCell(select.get(), i, columns));
    }
    std::string name = key < columns.size() ? row.values[key] : std::string();
    rows.emplace(std::move(name), std::move(row));
  }
  if (code != SQLITE_DONE) ThrowUnreadable(sqlite3_errmsg(db));
  return rows;
}

}  // namespace

Rehearsal::Rehearsal(sqlite3* file)
    : session_("60718", L":memory:",
               SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY, 0) {
  const bool attached =
      sqlite3_exec(handle(), "ATTACH ':memory:' AS before", nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!attached) ThrowUnreadable(sqlite3_errmsg(handle()));
  Load(file, handle(), kBefore);
  Load(file, handle(), "main");
  // A page that could not be read went over as zeros.
  const wexpol::Text found = wexpol::QueryText(handle(), "PRAGMA main.quick_check(1)");
  if (found.view() != "ok") ThrowUnreadable("a page of it is damaged");
}

sqlite3* Rehearsal::handle() const { return wexpol::HandleOf(session_); }

std::vector<RowChange> Rehearsal::ChangesOf(const wexpol::Table& table) const {
  std::vector<std::string> columns;
  std::size_t key = SIZE_MAX;
  for (const wexpol::ColumnDef* column : wexpol::DocumentColumns(table)) {
    if (column == table.key()) key = columns.size();
    columns.emplace_back(column->name);
  }
  const auto removed = OnlyIn(handle(), kBefore, "main", table.name(), columns, key);
  auto added = OnlyIn(handle(), "main", kBefore, table.name(), columns, key);

  std::vector<RowChange> changes;
  const auto note = [&](RowChange::Kind kind, const Row* before, const Row* after) {
    const Row& any = before ? *before : *after;
    RowChange change{kind, key < columns.size() ? any.cells[key] : Nothing(), {}};
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (before && after && before->values[i] == after->values[i]) continue;
      if (any.cells[i].json == Nothing().json && !(before && after)) continue;
      change.columns.push_back(
          {columns[i], before ? before->cells[i] : Nothing(), after ? after->cells[i] : Nothing()});
    }
    changes.push_back(std::move(change));
  };
  for (const auto& [name, row] : removed) {
    const auto same = key < columns.size() ? added.find(name) : added.end();
    if (same == added.end()) {
      note(RowChange::kRemoved, &row, nullptr);
    } else {
      note(RowChange::kChanged, &row, &same->second);
      added.erase(same);
    }
  }
  for (const auto& [name, row] : added) note(RowChange::kAdded, nullptr, &row);
  return changes;
}

}  // namespace wexpolctl
