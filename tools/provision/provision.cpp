#include "tools/provision/provision.h"

#include <sqlite3.h>

#include "tools/provision/schema.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/file_rights.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"

namespace wexpol {
namespace {

bool CreateTables(const std::wstring& path, std::string& error) {
  const EngineHandle db(OpenKeyed(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
  if (!db) {
    error = "the file cannot be created";
    return false;
  }
  KeepSideFiles(db.get());
  for (const char* sql : {"PRAGMA journal_mode = WAL", kSchema}) {
    if (sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK) continue;
    error = sqlite3_errmsg(db.get());
    return false;
  }
  return true;
}

}  // namespace

sqlite3* OpenKeyed(const std::wstring& path, int flags) {
  // An empty file is a database to be made; the engine itself would not ask what the folder says.
  if ((flags & SQLITE_OPEN_CREATE) && !FileExists(path) && !MakePrivateFile(path)) return nullptr;
  EngineHandle db;
  if (OpenEncrypted(WideToUtf8(path), flags, &db) != SQLITE_OK) return nullptr;
  if (FileExists(path + L"-wal")) KeepSideFiles(db.get());  // a copy gets none
  return db.release();
}

bool PrepareFolders(const std::wstring& database, const std::wstring& readers, std::string& error) {
  const std::wstring folder = FolderOf(database), log = FolderOf(CFilePaths::GetLocationLogFile());
  const bool agents = database == CFilePaths::GetLocationDB();
  if (FileExists(folder) && !agents) {
    error = "its folder is there and keeps its rights";
    return readers.empty();
  }
  error = "the folder cannot be made, or its rights cannot be given";
  return MakePrivateFolder(folder, readers) && (!agents || log == folder || MakeLogFolder(log));
}

bool CreateDatabase(const std::wstring& path, std::string& error) {
  if (FileExists(path)) {
    error = "there already is a file";
    return false;
  }
  if (CreateTables(path, error)) return true;
  RemoveFile(path);
  for (const wchar_t* end : kSideFiles) RemoveFile(path + end);
  return false;
}

}  // namespace wexpol
