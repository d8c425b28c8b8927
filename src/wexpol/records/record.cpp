#include "wexpol/records/record.h"

#include <array>

#include "wexpol/records/row.h"
#include "wexpol/records/statement.h"

namespace wexpol {
namespace {

using FoundMembers = std::array<const rapidjson::Value*, kMaxColumns>;

const void* FieldIn(const ColumnDef& column, const void* row) {
  return column.field(const_cast<void*>(row));
}

bool IsNull(const ColumnDef& column, const void* row) {
  return column.codec->is_null(FieldIn(column, row));
}

bool IsSet(const ColumnDef& column, const void* row) {
  if (column.flags & kKey) return false;
  return (column.flags & kAlwaysSet) || !IsNull(column, row);
}

void BindField(const ColumnDef& column, const void* row, Statement& statement, int index) {
  Target target(statement, index);
  column.codec->bind(FieldIn(column, row), target);
}

// The member of each column, null where there is none. Members mostly come in column order, so
// each is looked for behind the one before. Of members of the same name the first counts.
void FindMembers(const Columns& columns, const rapidjson::Value& object, FoundMembers& found) {
  const std::size_t count = columns.size();
  std::fill_n(found.begin(), count, nullptr);
  std::size_t next = 0;
  for (auto member = object.MemberBegin(); member != object.MemberEnd(); ++member) {
    const std::string_view name(member->name.GetString(), member->name.GetStringLength());
    for (std::size_t tried = 0; tried < count; ++tried) {
      const std::size_t at = next;
      next = next + 1 == count ? 0 : next + 1;
      if (columns.begin()[at].name != name) continue;
      if (!found[at]) found[at] = &member->value;
      break;
    }
  }
}

}  // namespace

bool MayLack(const ColumnDef& column, const rapidjson::Value* member, unsigned required) {
  return !(column.flags & required) && !(member && (column.flags & kWellFormed));
}

bool ParseColumns(const Columns& columns, void* row, const rapidjson::Value& value,
                  unsigned required) {
  if (!value.IsObject()) return false;
  FoundMembers found;
  FindMembers(columns, value, found);
  auto member = found.begin();
  for (const ColumnDef& column : columns) {
    if (*member && column.codec->parse(**member, column.field(row))) {
      if (column.parsed) column.parsed(row);
    } else if (!MayLack(column, *member, required)) {
      return false;
    }
    ++member;
  }
  return true;
}

void GenerateColumns(const Columns& columns, const void* row, std::string& out) {
  out += '{';
  bool first = true;
  for (const ColumnDef& column : columns) {
    if ((column.flags & kNotReported) || IsNull(column, row)) continue;
    if (!first) out += ',';
    first = false;
    out.append("\"").append(column.name).append("\": ");
    column.codec->write(FieldIn(column, row), out);
  }
  out += '}';
}

void BindRow(const Table& table, const void* row, Statement& insert) {
  int index = 0;
  for (const ColumnDef& column : table.columns()) {
    if (!(column.flags & kAssignedByDb)) BindField(column, row, insert, ++index);
  }
}

bool ParseRow(const Table& table, void* row, const rapidjson::Value& value, bool strict) {
  return ParseColumns(table.columns(), row, value, strict ? kRequired | kStrict : kRequired);
}

void GenerateRow(const Table& table, const void* row, std::string& out) {
  GenerateColumns(table.columns(), row, out);
}

int AddRow(const Table& table, const void* row, sqlite3* db) {
  Statement insert(db, table.insert());
  if (insert.ok()) BindRow(table, row, insert);
  return insert.Step();
}

int UpdateRow(const Table& table, const void* row, sqlite3* db) {
  std::string sql = std::string("UPDATE ") + table.name() + " SET ";
  for (const ColumnDef& column : table.columns()) {
    if (IsSet(column, row)) sql.append(column.name).append("=?,");
  }
  // With nothing to set this drops the blank after SET, and the prepare fails: that is how an
  // update of nothing reports itself.
  sql.pop_back();
  if (table.key()) sql.append(" WHERE ").append(table.key()->name).append("=?");

  Statement update = Statement::Composed(db, sql);
  if (!update.ok()) return update.code();
  int index = 0;
  for (const ColumnDef& column : table.columns()) {
    if (IsSet(column, row)) BindField(column, row, update, ++index);
  }
  if (table.key()) BindField(*table.key(), row, update, ++index);
  return update.Step();
}

int DeleteRow(const Table& table, const void* row, sqlite3* db) {
  Statement remove(db, table.delete_by_key());
  if (!remove.ok()) return remove.code();
  if (table.key()) BindField(*table.key(), row, remove, 1);
  if (!remove.ok()) throw remove.code();
  return remove.Step();
}

void CopyRow(const Table& table, void* row, sqlite3_stmt* statement) {
  int index = 0;
  for (const ColumnDef& column : table.columns()) {
    column.codec->copy(statement, index++, column.field(row));
  }
}

void ReleaseRow(const Table& table, void* row) {
  for (const ColumnDef& column : table.columns()) {
    if (column.codec->release) column.codec->release(column.field(row));
  }
}

}  // namespace wexpol
