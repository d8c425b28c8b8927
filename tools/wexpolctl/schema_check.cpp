#include "tools/wexpolctl/schema_check.h"

#include <map>
#include <utility>

#include "tools/provision/schema.h"
#include "wexpol/policydb/encrypted_file.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

// By type and name: what the engine answers about it, which differs where the making differs.
using Objects = std::map<std::pair<std::string, std::string>, std::string>;

// A text without the blanks that only lay it out.
std::string Squeezed(const char* sql) {
  std::string text;
  for (; sql && *sql; ++sql) {
    const bool blank = *sql == ' ' || *sql == '\n' || *sql == '\r' || *sql == '\t';
    if (!blank) text += *sql;
  }
  return text;
}

std::string ColumnsOf(sqlite3* db, const char* table) {
  const wexpol::Text columns = wexpol::QueryText(
      db, "SELECT group_concat(name||' '||type||' '||pk, ', ') FROM pragma_table_info(?)", table);
  return std::string(columns.view());
}

Objects ObjectsOf(sqlite3* db) {
  Objects objects;
  wexpol::Statement select(db,
                           "SELECT type, name, sql FROM sqlite_schema WHERE name NOT LIKE "
                           "'sqlite\\_%' ESCAPE '\\'");
  while (select.StepRow()) {
    const std::string type = select.Text(0);
    objects[{type, select.Text(1)}] =
        type == "table" ? ColumnsOf(db, select.Text(1)) : Squeezed(select.Text(2));
  }
  return objects;
}

Objects Expected() {
  sqlite3* opened = nullptr;
  sqlite3_open(":memory:", &opened);
  const wexpol::EngineHandle db(opened);
  sqlite3_exec(opened, wexpol::kSchema, nullptr, nullptr, nullptr);
  return ObjectsOf(opened);
}

}  // namespace

SchemaDifferences CompareWithSchema(sqlite3* db) {
  SchemaDifferences differences;
  const Objects found = ObjectsOf(db);
  for (const auto& [object, making] : Expected()) {
    const auto& [type, name] = object;
    const auto here = found.find(object);
    if (here != found.end() && here->second == making) continue;
    const bool is_index = type == "index";
    auto& list = is_index ? differences.notes : differences.faults;
    list.push_back("the " + type + ' ' + name +
                   (here == found.end() ? " is missing" : " is of another make"));
  }
  return differences;
}

}  // namespace wexpolctl
