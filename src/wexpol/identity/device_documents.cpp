#include "wexpol/identity/device_documents.h"

#include <algorithm>

#include "wexpol/identity/device.h"
#include "wexpol/identity/nic.h"
#include "wexpol/records/synchronise.h"

namespace wexpol {
namespace {

bool ParseStrictly(CDevice& device, const rapidjson::Value& value) {
  return device.ParseJson(value, true);
}

bool Parse(CNic& nic, const rapidjson::Value& value) { return nic.ParseJson(value); }

template <typename Record>
bool UpdateRows(sqlite3* db, const char* json, bool (*parse)(Record&, const rapidjson::Value&),
                std::string& error) {
  Document document;
  const rapidjson::Value& root = document.root();
  const bool is_array = document.Parse(json) && root.IsArray();
  const Records rows = is_array ? Records{root.Begin(), root.Size()} : Records{&root, 1};
  int code = db ? SQLITE_DONE : SQLITE_MISUSE;  // Where an array has nothing to update.
  std::all_of(rows.first, rows.first + rows.count, [&](const rapidjson::Value& value) {
    Record record;
    code = value.IsObject() && parse(record, value) ? record.UpdateDB(db) : kNoCode;
    return code == SQLITE_DONE;
  });
  if (code != SQLITE_DONE) error = FailureObject(db, code);
  return code == SQLITE_DONE;
}

}  // namespace

bool AddDevice(sqlite3* db, CDevice* device, const char* json, std::string& error) {
  const int code = AddObject(db, device, json, [&](const rapidjson::Value& value) {
    return ParseStrictly(*device, value);
  });
  if (code != SQLITE_DONE) error = FailureObject(db, code, kObjectJsonError);
  return code == SQLITE_DONE;
}

bool UpdateDevices(sqlite3* db, const char* json, std::string& error) {
  return UpdateRows(db, json, &ParseStrictly, error);
}

bool UpdateNics(sqlite3* db, const char* json, std::string& error) {
  return UpdateRows(db, json, &Parse, error);
}

}  // namespace wexpol
