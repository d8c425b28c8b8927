#include "wexpol/policydb/encrypted_file.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/database_key.h"
#include "wexpol/records/statement.h"

namespace wexpol {
namespace {

bool IsInMemory(sqlite3* db) {
  const char* file = sqlite3_db_filename(db, "main");
  return !file || !*file;
}

}  // namespace

int OpenEncrypted(const std::string& utf8_path, int flags, EngineHandle* opened) {
  sqlite3* db = nullptr;
  const int code = sqlite3_open_v2(utf8_path.c_str(), &db, flags, nullptr);
  EngineHandle handle(db);
  if (code != SQLITE_OK) return code;
  int key_code = ApplyDatabaseKey(db);
  // The engine has no key for a database in memory, of which nothing is ever written.
  if (key_code == SQLITE_ERROR && IsInMemory(db)) key_code = SQLITE_OK;
  if (key_code == SQLITE_OK) *opened = std::move(handle);
  return key_code;
}

int OpenUntouched(const std::wstring& path, EngineHandle* opened) {
  const bool alone = std::none_of(std::begin(kSideFiles), std::end(kSideFiles),
                                  [&](const wchar_t* end) { return FileExists(path + end); });
  if (alone) {
    // As immutable it is neither locked nor given a log.
    return OpenEncrypted(FileUri(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
                         opened);
  }
  const int code = OpenEncrypted(WideToUtf8(path), SQLITE_OPEN_READONLY, opened);
  // Whoever closes last would else empty the log and take the files away.
  if (code == SQLITE_OK) {
    sqlite3_db_config(opened->get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  }
  return code;
}

bool IsSound(sqlite3* db) {
  Statement check(db, "PRAGMA integrity_check;");
  return check.StepRow() && sqlite3_column_type(check.get(), 0) == SQLITE_TEXT &&
         check.Text(0) == std::string_view("ok");
}

void KeepSideFiles(sqlite3* db) {
  int on = 1;
  sqlite3_file_control(db, "main", SQLITE_FCNTL_PERSIST_WAL, &on);
}

}  // namespace wexpol
