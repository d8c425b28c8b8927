// The C interface: tables by their names.

#include <memory>

#include "wexpol/c_api/session.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/synchronise.h"

namespace {

using Store = bool (*)(sqlite3*, const wexpol::RecordClass&, const char*, std::string&);

const wexpol::RecordClass* Find(const char* table) {
  return table ? wexpol::FindTable(table) : nullptr;
}

int UnknownTable(wexpol_session& session) {
  return wexpol::Failure(session, wexpol::ErrorObject(SQLITE_ERROR, "no such table"));
}

int StoreDocument(wexpol_session* session, const char* table, const char* json, Store store) {
  if (!session) return SQLITE_MISUSE;
  return wexpol::Ask(SQLITE_NOMEM, [&]() -> int {
    const wexpol::RecordClass* record_class = Find(table);
    if (!record_class) return UnknownTable(*session);
    std::string error;
    return store(wexpol::HandleOf(session->db), *record_class, json, error)
               ? SQLITE_OK
               : wexpol::Failure(*session, error);
  });
}

// The whole row, also what the console is not told.
void AppendRow(const wexpol::Table& table, void* row, std::string& out) {
  char separator = '{';
  for (const wexpol::ColumnDef& column : table.columns()) {
    const void* field = column.field(row);
    if (column.codec->is_null(field)) continue;
    out += separator;
    out.append("\"").append(column.name).append("\": ");
    column.codec->write(field, out);
    separator = ',';
  }
  out += separator == '{' ? "{}" : "}";
}

bool AppendRows(sqlite3* db, const wexpol::RecordClass& record_class, const char* column,
                std::int64_t value, std::string& out, std::string& error) {
  wexpol::ListStatement select(db, record_class.table(), column, value);
  char separator = '[';
  while (select.StepRow()) {
    const std::unique_ptr<void, void (*)(void*)> record(record_class.create(),
                                                        record_class.destroy);
    void* row = record_class.row(record.get());
    wexpol::CopyRow(record_class.table(), row, select.get());
    out += separator;
    AppendRow(record_class.table(), row, out);
    separator = ',';
  }
  out += separator == '[' ? "[]" : "]";
  return select.Finish(error);
}

}  // namespace

int wexpol_replace_table(wexpol_session* session, const char* table, const char* json) {
  return StoreDocument(session, table, json, &wexpol::ReplaceTable);
}

int wexpol_add_to_table(wexpol_session* session, const char* table, const char* json) {
  return StoreDocument(session, table, json, &wexpol::AddDocument);
}

int wexpol_clear_table(wexpol_session* session, const char* table) {
  if (session && !Find(table))
    return wexpol::Ask(SQLITE_NOMEM, [&] { return UnknownTable(*session); });
  return wexpol::RunSession(session, nullptr, [&](CPolicyDB& db) {
    return wexpol::ClearTable(wexpol::HandleOf(db), Find(table)->table());
  });
}

int wexpol_list_table(wexpol_session* session, const char* table, const char* column, int64_t value,
                      char** json) {
  if (json) *json = nullptr;
  if (!session) return SQLITE_MISUSE;
  return wexpol::Ask(SQLITE_NOMEM, [&]() -> int {
    const wexpol::RecordClass* record_class = Find(table);
    if (!record_class) return UnknownTable(*session);
    std::string rows;
    std::string error;
    if (!AppendRows(wexpol::HandleOf(session->db), *record_class, column, value, rows, error)) {
      return wexpol::Failure(*session, error);
    }
    wexpol::HandOver(rows, json);
    return SQLITE_OK;
  });
}

int wexpol_content_hash(wexpol_session* session, const char* table, char** hash) {
  return wexpol::RunSession(session, hash, [&](CPolicyDB& db) {
    std::string digits;
    if (!table || !db.GetContentHash(digits, table)) return false;
    wexpol::HandOver(digits, hash);
    return true;
  });
}

int wexpol_version_report(wexpol_session* session, char** json) {
  return wexpol::RunSession(session, json, [&](CPolicyDB& db) {
    std::uint64_t empty = 0;
    std::string report;
    db.GetGlobalTableJson(empty, report);
    if (!db.IsValidDB()) return false;
    wexpol::HandOver(report, json);
    return true;
  });
}
