#include "wexpol/policydb/restore.h"

#include "wexpol/platform/file_rights.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"

namespace wexpol {
namespace {

// The code of the first read, which shows whether the key fits.
int FirstRead(sqlite3* db) {
  return sqlite3_exec(db, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
}

// The backup is one file: what may lie beside it is not part of it.
int OpenBackup(const std::wstring& path, EngineHandle* backup) {
  const int code =
      OpenEncrypted(FileUri(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, backup);
  return code == SQLITE_OK ? FirstRead(backup->get()) : code;
}

// All of them, or the file keeps its own.
bool CopyPages(sqlite3* from, sqlite3* to) {
  sqlite3_backup* copy = sqlite3_backup_init(to, "main", from, "main");
  if (!copy) return false;
  sqlite3_backup_step(copy, -1);
  return sqlite3_backup_finish(copy) == SQLITE_OK;
}

bool IsDamage(int code) { return code == SQLITE_NOTADB || code == SQLITE_CORRUPT; }

// Side files under another name; back again, unless they are given up.
class SideFilesAside {
 public:
  explicit SideFilesAside(const std::wstring& database) : database_(database) {
    for (const wchar_t* end : kSideFiles) {
      RemoveFile(Aside(end));  // of a restore that was killed
      if (!FileExists(database_ + end)) continue;
      if (!MoveFileOver(database_ + end, Aside(end))) {
        all_ = false;
        break;
      }
    }
  }
  ~SideFilesAside() {
    for (const wchar_t* end : kSideFiles) {
      if (given_up_) {
        RemoveFile(Aside(end));
      } else {
        RenameFile(Aside(end), database_ + end);
      }
    }
  }
  SideFilesAside(const SideFilesAside&) = delete;
  SideFilesAside& operator=(const SideFilesAside&) = delete;

  bool all() const { return all_; }
  void GiveUp() { given_up_ = true; }

 private:
  std::wstring Aside(const wchar_t* end) const { return database_ + L".replaced" + end; }

  const std::wstring& database_;
  bool all_ = true;
  bool given_up_ = false;
};

bool ReplaceByCopy(const std::wstring& backup, const std::wstring& database) {
  const std::wstring copy = database + L".restoring";
  RemoveFile(copy);
  bool done = MakePrivateFile(copy) && CopyFileOver(backup, copy) &&
              (!FileExists(database) || TakeRights(database, copy));
  if (done) {
    SideFilesAside side_files(database);
    done = side_files.all() && MoveFileOver(copy, database);
    if (done) side_files.GiveUp();
  }
  if (!done) RemoveFile(copy);
  return done;
}

}  // namespace

bool RestoreFile(const std::wstring& backup, const std::wstring& database, int busy_timeout_ms) {
  EngineHandle to;
  int code = OpenEncrypted(WideToUtf8(database), SQLITE_OPEN_READWRITE, &to);
  if (code == SQLITE_OK) {
    sqlite3_busy_timeout(to.get(), busy_timeout_ms);
    KeepSideFiles(to.get());
    code = FirstRead(to.get());
  }
  if (code == SQLITE_OK) {
    // Over damaged pages, too: the old ones are not looked at.
    EngineHandle from;
    return OpenBackup(backup, &from) == SQLITE_OK && CopyPages(from.get(), to.get());
  }
  to.reset();
  // Whatever else went wrong may pass, and the file may be sound.
  const bool lost = IsDamage(code) || !FileExists(database);
  return lost && ReplaceByCopy(backup, database);
}

}  // namespace wexpol
