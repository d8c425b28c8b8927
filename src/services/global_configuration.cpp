#include "services/global_configuration.h"

#include "platform/text.h"
#include "records/query.h"
#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblGlobalConfiguration::id>("id", records::kKey | records::kRequired),
    Column<&tblGlobalConfiguration::value>("value"),
};

}  // namespace

const records::Table& CGlobalConfiguration::Table() {
  static const records::Table& table =
      *new records::Table("global_configurations", "global_configuration", kColumns);
  return table;
}

CGlobalConfiguration::CGlobalConfiguration(short number, const char* text) {
  id = number;
  SetValue(text);
}

CGlobalConfiguration::CGlobalConfiguration(short number, const wchar_t* text) {
  id = number;
  SetValue(text);
}

bool CGlobalConfiguration::GetGlobalConfiguration(std::wstring& value, sqlite3* db, short id) {
  std::string text;
  if (!records::QueryText(text, db, "SELECT value FROM global_configurations WHERE id=?", id)) {
    return false;
  }
  value = platform::Utf8ToWide(text);
  return true;
}

bool CGlobalConfiguration::GetRecord(sqlite3* db, short number) const {
  return records::QueryExists(db, "SELECT id FROM global_configurations WHERE id=?", number);
}

bool CGlobalConfiguration::SetGlobalConfiguration(sqlite3* db) {
  return (GetRecord(db, id) ? UpdateDB(db) : Add2DB(db)) == SQLITE_DONE;
}

bool CGlobalConfiguration::SetGlobalConfiguration(sqlite3* db, short id, const wchar_t* value) {
  return CGlobalConfiguration(id, value).SetGlobalConfiguration(db);
}

void CGlobalConfiguration::SetValue(const wchar_t* text) { value = records::ToUtf8(text); }
