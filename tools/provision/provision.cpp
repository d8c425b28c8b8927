#include "tools/provision/provision.h"

#include <sqlite3.h>

#include <memory>

#include "tools/provision/schema.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/database_key.h"

namespace wexpol {
namespace {

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

bool CreateTables(const std::wstring& path, std::string& error) {
  const Handle db(OpenKeyed(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE), sqlite3_close);
  if (!db) {
    error = "the file cannot be created";
    return false;
  }
  for (const char* sql : {"PRAGMA journal_mode = WAL", kSchema}) {
    if (sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK) continue;
    error = sqlite3_errmsg(db.get());
    return false;
  }
  return true;
}

}  // namespace

sqlite3* OpenKeyed(const std::wstring& path, int flags) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(WideToUtf8(path).c_str(), &opened, flags, nullptr);
  Handle db(opened, sqlite3_close);
  if (code != SQLITE_OK) return nullptr;
  ApplyDatabaseKey(opened);
  return db.release();
}

bool CreateDatabase(const std::wstring& path, std::string& error) {
  if (FileExists(path)) {
    error = "there already is a file";
    return false;
  }
  if (CreateTables(path, error)) return true;
  for (const wchar_t* suffix : {L"", L"-wal", L"-shm", L"-journal"}) {
    RemoveFile(path + suffix);
  }
  return false;
}

}  // namespace wexpol
