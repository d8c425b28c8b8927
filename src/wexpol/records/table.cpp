#include "wexpol/records/table.h"

namespace wexpol {

Table::Table(const char* name, const char* json_key, Columns columns, Deviations deviations)
    : name_(name), json_key_(json_key), columns_(columns), deviations_(deviations) {
  std::string inserted;
  std::string marks;
  for (const ColumnDef& column : columns_) {
    if (column.flags & kKey) key_ = &column;
    if (column.parsed) has_hooks_ = true;
    column_list_.append(column_list_.empty() ? "" : ",").append(column.name);
    if (column.flags & kAssignedByDb) continue;
    inserted.append(inserted.empty() ? "" : ",").append(column.name);
    marks.append(marks.empty() ? "?" : ",?");
  }
  insert_sql_ = std::string("INSERT INTO ") + name + "(" + inserted + ") VALUES(" + marks + ")";
  if (deviations_.insert) insert_sql_ = deviations_.insert;
  clear_sql_ = std::string("DELETE FROM ") + name;
  select_sql_ = "SELECT " + column_list_ + " FROM " + name;

  std::string condition;
  if (key_) condition.append(" WHERE ").append(key_->name).append("=?");
  delete_sql_ = clear_sql_ + condition;
  select_by_key_sql_ = select_sql_ + condition;
}

const rapidjson::Value& MemberOrSelf(const rapidjson::Value& root,
                                     std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const auto member = root.FindMember(name);
    if (member != root.MemberEnd()) return member->value;
  }
  return root;
}

}  // namespace wexpol
