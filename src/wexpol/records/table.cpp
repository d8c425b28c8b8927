#include "wexpol/records/table.h"

namespace wexpol {

Table::Table(const char* name, const char* json_key, Columns columns, Deviations deviations)
    : name_(name), json_key_(json_key), columns_(columns), deviations_(deviations) {
  std::string selected;
  std::string inserted;
  std::string marks;
  for (const ColumnDef& column : columns_) {
    if (column.flags & kKey) key_ = &column;
    if (column.parsed) has_hooks_ = true;
    selected.append(selected.empty() ? "" : ",").append(column.name);
    if (column.flags & kAssignedByDb) continue;
    inserted.append(inserted.empty() ? "" : ",").append(column.name);
    marks.append(marks.empty() ? "?" : ",?");
  }
  const std::string table = name;
  insert_ = "INSERT INTO " + table + "(" + inserted + ") VALUES(" + marks + ")";
  if (deviations_.insert) insert_ = deviations_.insert;
  select_ = "SELECT " + selected + " FROM " + table + deviations_.condition;
  clear_ = "DELETE FROM " + table;

  std::string of_key;
  if (key_) of_key.append(" WHERE ").append(key_->name).append("=?");
  select_by_key_ = select_ + of_key;
  delete_by_key_ = clear_ + of_key;
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
