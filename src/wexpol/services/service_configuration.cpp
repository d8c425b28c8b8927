#include "wexpol/services/service_configuration.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblServiceConfiguration::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblServiceConfiguration::service_id>("service_id"),
    Column<&tblServiceConfiguration::key>("key"),
    Column<&tblServiceConfiguration::value>("value"),
    Column<&tblServiceConfiguration::is_url>("is_url", wexpol::kFlag16),
    Column<&tblServiceConfiguration::row_version>("row_version"),
};

// No longer key is found where a single row is looked for.
constexpr std::size_t kMaxKey = 78;

// SQLITE_ROW, SQLITE_DONE where there is no such row, or what went wrong.
int Find(CServiceConfiguration& record, sqlite3* db, const char* key, short service_id) {
  if (!key) return SQLITE_MISUSE;
  if (std::string_view(key).size() > kMaxKey) return SQLITE_DONE;
  // A service id of 0 or less asks for the row of any service.
  return wexpol::FetchRecord(record, db,
                             "SELECT * FROM service_configurations "
                             "WHERE key=?1 AND (?2<1 OR service_id=?2)",
                             key, service_id);
}

}  // namespace

const wexpol::Table& CServiceConfiguration::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("service_configurations", "service_configuration", kColumns);
  return table;
}

char* CServiceConfiguration::GetServiceConfiguration(sqlite3* db, const char* key, short) {
  return wexpol::QueryText(db, "SELECT value FROM service_configurations WHERE key=?", key)
      .release();
}

bool CServiceConfiguration::GetServiceConfiguration(std::string& value, sqlite3* db,
                                                    const char* key, short service_id) {
  // Rows without a service hold NULL, which equals nothing.
  return service_id != -1 &&
         wexpol::QueryText(value, db,
                           "SELECT value FROM service_configurations WHERE key=? AND service_id=?",
                           key, service_id);
}

bool CServiceConfiguration::GetRecord(sqlite3* db, const char* wanted, short wanted_service) {
  return Find(*this, db, wanted, wanted_service) == SQLITE_ROW;
}

bool CServiceConfiguration::SetServiceConfiguration(sqlite3* db, const char* new_value,
                                                    const char* wanted, short new_is_url,
                                                    short wanted_service) {
  CServiceConfiguration record;  // The texts may be this record's own.
  const int found = Find(record, db, wanted, wanted_service);
  if (found != SQLITE_ROW && found != SQLITE_DONE) return false;
  const bool is_new = found == SQLITE_DONE;
  if (is_new) {
    record.SetKey(wanted);
    record.is_url = new_is_url;
    record.service_id = wanted_service;
  }
  if (new_value) record.SetValue(new_value);
  *this = std::move(record);
  return (is_new ? Add2DB(db) : UpdateDB(db)) == SQLITE_DONE;
}

void CServiceConfiguration::SetKey(const wchar_t* text) { key = wexpol::ToUtf8(text); }
void CServiceConfiguration::SetValue(const wchar_t* text) { value = wexpol::ToUtf8(text); }
