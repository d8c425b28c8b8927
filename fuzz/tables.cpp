// Documents: a line that names the table, then the text. Once through the synchronisation, and once
// through the record class and back to JSON.

#include <rapidjson/document.h>

#include <memory>

#include "fuzz/fuzz.h"
#include "wexpol.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/records/document.h"

namespace {

using fuzz::Require;

// The table of that name, else any.
const wexpol::RecordClass& TableOf(const std::string& name) {
  if (const wexpol::RecordClass* found = wexpol::FindTable(name)) return *found;
  const auto tables = wexpol::AllTables();
  return *tables[std::hash<std::string>()(name) % tables.size()];
}

void Synchronise(std::string_view input) {
  const wexpol::RecordClass& table = TableOf(fuzz::TakeLine(input));
  sqlite3* db = fuzz::Database();
  sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
  std::string error;
  const bool done = wexpol::ReplaceTable(db, table, std::string(input).c_str(), error);
  Require(done == error.empty(), "an error object after a failure, and only then");
  Require(done || wexpol::Document().Parse(error.c_str()), "an error object that is JSON");
  Require(!sqlite3_get_autocommit(db), "the caller's transaction");
  sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
}

// What a record tells of itself is understood by another one, which tells the same.
std::string Told(const wexpol::RecordClass& table, const rapidjson::Value& json) {
  const std::unique_ptr<void, void (*)(void*)> record(table.create(), table.destroy);
  std::string out;
  if (json.IsObject() && table.parse(record.get(), json)) {
    wexpol::GenerateRow(table.table(), table.row(record.get()), out);
  }
  return out;
}

void ParseRecord(std::string_view input) {
  fuzz::Database();  // Some records store what they parse in the registry.
  const wexpol::RecordClass& table = TableOf(fuzz::TakeLine(input));
  wexpol::Document document, again;
  if (!document.Parse(std::string(input).c_str())) return;
  wexpol::Records records;
  if (!wexpol::FindRecords(table.table(), document.root(), records) || records.count == 0) return;
  const std::string told = Told(table, *records.first);
  if (told.empty()) return;
  Require(again.Parse(told.c_str()), "generated JSON that is JSON");
  Told(table, again.root());

  CAvSchedule schedule;
  if (schedule.ParseJson(again.root())) Require(schedule.HowLongUntilSchedule() >= -1, "a time");
  CAlertEventType type;
  if (type.ParseJson(again.root())) type.IsLimitReached(type.threshold, type.time_window);
}

const fuzz::Harness kSynchronise("document", &Synchronise);
const fuzz::Harness kParse("record", &ParseRecord);

}  // namespace
