#include "wexpol/services/global_configuration.h"

#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblGlobalConfiguration::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblGlobalConfiguration::value>("value"),
};

}  // namespace

const wexpol::Table& CGlobalConfiguration::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("global_configurations", "global_configuration", kColumns);
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
  if (!wexpol::QueryText(text, db, "SELECT value FROM global_configurations WHERE id=?", id)) {
    return false;
  }
  value = wexpol::Utf8ToWide(text);
  return true;
}

bool CGlobalConfiguration::GetRecord(sqlite3* db, short number) const {
  return wexpol::QueryExists(db, "SELECT id FROM global_configurations WHERE id=?", number);
}

bool CGlobalConfiguration::SetGlobalConfiguration(sqlite3* db) {
  return (GetRecord(db, id) ? UpdateDB(db) : Add2DB(db)) == SQLITE_DONE;
}

bool CGlobalConfiguration::SetGlobalConfiguration(sqlite3* db, short id, const wchar_t* value) {
  return CGlobalConfiguration(id, value).SetGlobalConfiguration(db);
}

void CGlobalConfiguration::SetValue(const wchar_t* text) { value = wexpol::ToUtf8(text); }
