// wexpolctl backup and restore: the copy that the agent falls back to.

#include <filesystem>
#include <system_error>

#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/restore.h"
#include "wexpol/platform/file_rights.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"

namespace wexpolctl {
namespace {

// A consistent copy, also while other processes write. Empty, or what went wrong.
std::string CopyDatabase(sqlite3* from, const std::wstring& to) {
  const wexpol::EngineHandle copy(
      wexpol::OpenKeyed(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
  if (!copy) return wexpol::WideToUtf8(to) + " cannot be made";
  sqlite3_backup* backup = sqlite3_backup_init(copy.get(), "main", from, "main");
  if (!backup) return sqlite3_errmsg(copy.get());
  sqlite3_backup_step(backup, -1);
  return sqlite3_backup_finish(backup) == SQLITE_OK ? "" : sqlite3_errmsg(copy.get());
}

// The path that an option names, which must not be that of the database.
std::wstring PathOr(const Call& call, const char* name, const std::wstring& otherwise) {
  if (!call.options.Has(name)) return otherwise;
  const std::wstring path = AbsolutePath(call.options.Text(name));
  std::error_code ignored;
  if (path == call.database ||
      std::filesystem::equivalent(ToPath(path), ToPath(call.database), ignored)) {
    throw Failure{kUsage, std::string(name) + " names the database itself.", "Name another file."};
  }
  return path;
}

ExitCode Backup(Call& call) {
  const std::wstring to = PathOr(call, "--to", BackupPathOf(call.database));
  Database database(call.database);
  const TemporaryDatabase copy(to + L".new");
  std::string problem = CopyDatabase(database.handle(), copy.path());
  if (problem.empty()) problem = FaultOfBackup(copy.path());
  if (problem.empty() && !wexpol::MoveFileOver(copy.path(), to)) {
    problem = wexpol::WideToUtf8(to) + " cannot be written";
  }
  if (!problem.empty()) {
    throw Failure{kFinding, "No backup was made: " + problem + ".",
                  "A former backup is as it was; see 'wexpolctl check'."};
  }
  RemoveSideFiles(to);  // They would be those of the former one.
  call.report.Add("database", Text(call.database));
  call.report.Add("backup", Text(to));
  call.report.Add("size", Size(wexpol::FileSize(to).value_or(0)));
  return kDone;
}

ExitCode Restore(Call& call) {
  const std::wstring from = PathOr(call, "--from", BackupPathOf(call.database));
  const std::wstring aside = RestoreDatabase(call.database, from);
  call.report.Add("database", Text(call.database));
  call.report.Add("taken from", Text(from));
  call.report.Add("former file", aside.empty() ? Nothing() : Text(aside));
  return kDone;
}

// With the rights that the file in its place has, or those of its folder.
bool CopyBackup(const std::wstring& backup, const std::wstring& copy,
                const std::wstring& database) {
  return wexpol::MakePrivateFile(copy) && wexpol::CopyFileOver(backup, copy) &&
         (!wexpol::FileExists(database) || wexpol::TakeRights(database, copy));
}

}  // namespace

std::string FaultOfBackup(const std::wstring& file) {
  try {
    const auto findings = Findings(Database(file).handle());
    return findings.empty() ? "" : findings.front();
  } catch (const Failure& failure) {
    return failure.problem;
  }
}

std::wstring RestoreDatabase(const std::wstring& database, const std::wstring& backup) {
  const std::string shown = wexpol::WideToUtf8(backup);
  if (!wexpol::FileExists(backup)) {
    throw Failure{kCannotOpen, "There is no backup at " + shown + ".",
                  "Name another file with --from, or start anew with 'wexpolctl init --force'."};
  }
  RequireUnused(database);
  // Looked at as a copy, so that the backup itself stays untouched.
  const TemporaryDatabase copy(database + L".new");
  if (!CopyBackup(backup, copy.path(), database)) {
    throw Failure{kCannotOpen, shown + " cannot be copied beside the database.",
                  "Check the space on the disk and whether this user may write there."};
  }
  if (!FaultOfBackup(copy.path()).empty()) {
    throw Failure{kFinding,
                  "The backup " + shown + " is damaged or incomplete; the database is as it was.",
                  "Name another backup with --from, or start anew with 'wexpolctl init --force'."};
  }
  const std::wstring aside = UnusedName(database + L".replaced");
  const bool existed = wexpol::FileExists(database);
  if (!ReplaceDatabase(copy.path(), database, aside)) {
    throw Failure{kFinding, wexpol::WideToUtf8(database) + " cannot be replaced.",
                  "Stop the processes that have it open first."};
  }
  return existed ? aside : std::wstring();
}

void RequireUnused(const std::wstring& database) { static_cast<void>(database); }

Command BackupCommand() {
  return {"backup",
          "Write the backup copy, which the agent falls back to",
          {{"--to FILE", Option::kText, "Another file than the one beside the database"}},
          &Backup,
          Effect::kWritesFile,
          "backup --to /mnt/wexpol.bak"};
}

Command RestoreCommand() {
  return {"restore",
          "Put the backup in the database's place; the former file is kept beside it",
          {{"--from FILE", Option::kText, "Another file than the one beside the database"}},
          &Restore,
          Effect::kChanges,
          "restore --from /mnt/wexpol.bak"};
}

}  // namespace wexpolctl
