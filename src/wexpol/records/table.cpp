#include "wexpol/records/table.h"

namespace wexpol {

Table::Table(const char* name, const char* json_key, Columns columns, Deviations deviations)
    : name_(name), json_key_(json_key), columns_(columns), deviations_(deviations) {
  std::string selected;
  std::string inserted;
  std::string marks;
  std::string answered;
  bool has_hooks = false;
  bool has_unseen = false;  // A column that a document must have and the insert leaves out.
  for (const ColumnDef& column : columns_) {
    const std::size_t number = static_cast<std::size_t>(&column - columns_.begin());
    if (column.flags & kKey) key_ = &column;
    if (column.parsed) has_hooks = true;
    selected.append(selected.empty() ? "" : ",").append(column.name);
    if (column.flags & kAssignedByDb) {
      has_unseen = has_unseen || (column.flags & (kRequired | kWellFormed));
      continue;
    }
    inserted.append(inserted.empty() ? "" : ",").append(column.name);
    marks.append(marks.empty() ? "?" : ",?");
    answered.append(answered.empty() ? "c" : ",c").append(std::to_string(number));
  }
  const std::string table = name;
  const std::string into = "INSERT INTO " + table + "(" + inserted + ") ";
  insert_ = deviations_.insert ? deviations_.insert : into + "VALUES(" + marks + ")";
  if (!has_hooks && !has_unseen && !deviations_.insert && !deviations_.through_record &&
      !deviations_.unwrap) {
    insert_document_ = into + "SELECT " + answered + " FROM " + kDocumentTable + "(?)";
  }
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
