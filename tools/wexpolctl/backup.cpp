// wexpolctl backup and restore: the copy that the agent falls back to.

#include <memory>

#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/restore.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

// A consistent copy, also while other processes write. Empty, or what went wrong.
std::string CopyDatabase(sqlite3* from, const std::wstring& to) {
  const Handle copy(wexpol::OpenKeyed(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE),
                    sqlite3_close);
  if (!copy) return "the file cannot be made";
  sqlite3_backup* backup = sqlite3_backup_init(copy.get(), "main", from, "main");
  if (!backup) return sqlite3_errmsg(copy.get());
  sqlite3_backup_step(backup, -1);
  if (sqlite3_backup_finish(backup) != SQLITE_OK) return sqlite3_errmsg(copy.get());
  const auto findings = IntegrityFindings(copy.get());
  return findings.empty() ? "" : findings.front();
}

std::wstring PathOr(const Options& options, const char* name, const std::wstring& otherwise) {
  return options.Has(name) ? AbsolutePath(options.Text(name)) : otherwise;
}

ExitCode Backup(Call& call) {
  const std::wstring to = PathOr(call.options, "--to", BackupPathOf(call.database));
  Database database(call.database);
  const std::wstring copy = to + L".new";
  wexpol::RemoveFile(copy);
  std::string problem = CopyDatabase(database.handle(), copy);
  if (problem.empty() && !MoveDatabase(copy, to)) problem = "the former backup cannot be replaced";
  if (!problem.empty()) {
    wexpol::RemoveFile(copy);
    RemoveSideFiles(copy);
    throw Failure{kFinding, "No backup was made: " + problem + ".",
                  "A former backup is as it was; see 'wexpolctl check'."};
  }
  call.report.Add("database", Text(call.database));
  call.report.Add("backup", Text(to));
  call.report.Add("size", Size(wexpol::FileSize(to).value_or(0)));
  return kDone;
}

ExitCode Restore(Call& call) {
  const std::wstring from = PathOr(call.options, "--from", BackupPathOf(call.database));
  const std::wstring aside = RestoreDatabase(call.database, from);
  call.report.Add("database", Text(call.database));
  call.report.Add("taken from", Text(from));
  call.report.Add("former file", aside.empty() ? Nothing() : Text(aside));
  return kDone;
}

}  // namespace

std::wstring RestoreDatabase(const std::wstring& database, const std::wstring& backup) {
  const std::string shown = wexpol::WideToUtf8(backup);
  if (!wexpol::FileExists(backup)) {
    throw Failure{kCannotOpen, "There is no backup at " + shown + ".",
                  "Name another file with --from, or start anew with 'wexpolctl init'."};
  }
  // Looked at as a copy, so that the backup itself stays untouched.
  const std::wstring copy = database + L".new";
  if (!wexpol::CopyFileOver(backup, copy)) {
    throw Failure{kCannotOpen, shown + " cannot be copied beside the database.",
                  "Check the space on the disk and whether this user may write there."};
  }
  try {
    if (!IntegrityFindings(Database(copy).handle()).empty()) {
      throw Failure{kFinding, "", ""};
    }
  } catch (const Failure&) {
    wexpol::RemoveFile(copy);
    RemoveSideFiles(copy);
    throw Failure{kFinding, "The backup " + shown + " is damaged; the database is as it was.",
                  "Name another backup with --from, or start anew with 'wexpolctl init --force'."};
  }
  const bool existed = wexpol::FileExists(database);
  const std::wstring aside = database + L".replaced";
  if ((existed && !MoveDatabase(database, aside)) || !MoveDatabase(copy, database)) {
    wexpol::RemoveFile(copy);
    throw Failure{kFinding, wexpol::WideToUtf8(database) + " cannot be replaced.",
                  "Stop the processes that have it open first."};
  }
  return existed ? aside : std::wstring();
}

Command BackupCommand() {
  return {"backup",
          "Write the backup copy, which the agent falls back to",
          {{"--to FILE", Option::kText, "Another file than the one beside the database"}},
          &Backup,
          Effect::kWritesFile};
}

Command RestoreCommand() {
  return {"restore",
          "Put the backup in the database's place; the former file is kept beside it",
          {{"--from FILE", Option::kText, "Another file than the one beside the database"}},
          &Restore,
          Effect::kChanges};
}

}  // namespace wexpolctl
