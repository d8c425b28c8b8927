// wexpolctl status: the file, its backup, the log and this device at a glance.

#include <algorithm>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/file_users.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/hash.h"
#include "wexpol/platform/hex.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

Cell SizeOf(const std::wstring& path) {
  const auto size = wexpol::FileSize(path);
  return size ? Size(*size) : Nothing();
}

// The file or its write-ahead log, whichever is newer.
Cell LastWritten(const std::wstring& database) {
  auto age = AgeOf(database);
  const std::wstring log = database + L"-wal";
  if (wexpol::FileSize(log).value_or(0) > 0) age = std::min(age, AgeOf(log));
  return age ? Instant(wexpol::NowUtc() - *age) : Nothing();
}

// What can be told without opening the database.
void ReportSurroundings(const Call& call) {
  Report& report = call.report;
  const std::wstring backup = BackupPathOf(call.database);
  const auto age = AgeOf(backup);
  const std::wstring log = CFilePaths::GetLocationLogFile();
  long device = 0;
  const bool stored = CDeviceInfo::GetDeviceID(&device);
  report.Add("file", Text(call.database));
  report.Add("size", SizeOf(call.database));
  report.Add("write-ahead log size", SizeOf(call.database + L"-wal"));
  report.Add("log pending", Flag(wexpol::FileSize(call.database + L"-wal").value_or(0) > 0));
  report.Add("last written", LastWritten(call.database));
  report.Add("backup", Text(backup));
  report.Add("backup size", SizeOf(backup));
  report.Add("backup age", age ? Duration(*age) : Nothing());
  report.Add("log", Text(log));
  report.Add("log size", SizeOf(log));
  report.Add("stored device id", stored ? Number(device) : Nothing());
}

// Who else has the file open; nothing where the system does not tell.
void ReportUsers(const Call& call) {
  const auto users = wexpol::UsersOfFile(call.database);
  call.report.Add("open elsewhere", users ? Flag(!users->empty()) : Nothing());
  Listing& listing = call.report.AddListing("users", {"process", "program"});
  for (const wexpol::FileUser& user : users.value_or(std::vector<wexpol::FileUser>())) {
    listing.Add({Number(user.process), user.program.empty() ? Nothing() : Text(user.program)});
  }
}

// The newest version of the rows; nothing where they carry none.
std::optional<std::int64_t> VersionOf(sqlite3* db, const std::string& table) {
  auto select =
      wexpol::Statement::Composed(db, "SELECT max(\"row_version\") FROM " + Quoted(table));
  if (!select.StepRow() || sqlite3_column_type(select.get(), 0) != SQLITE_INTEGER) {
    return std::nullopt;
  }
  return select.Int64(0);
}

std::string Digest(const std::string& text) {
  wexpol::Sha1Digest digest;
  std::string digits;
  if (wexpol::Sha1(text.data(), text.size(), &digest)) {
    wexpol::AppendHex(digest.data(), digest.size(), digits);
  }
  return digits;
}

// The tables that the console fills, and one digest over all of them: what two computers with the
// same policy have in common.
void ReportTables(Database& database, Report& report) {
  std::string all;
  std::string unreadable;
  Listing table_list({"table", "rows", "version", "hash"});
  for (const SyncTable& table : SyncTables()) {
    const std::string name = table.name();
    std::string hash;
    if (!database.session().GetContentHash(hash, table.name())) {
      unreadable += (unreadable.empty() ? "" : ", ") + name;
    }
    all += name + ' ' + hash + '\n';
    const auto rows = CountRows(database.handle(), name);
    const auto version = VersionOf(database.handle(), name);
    table_list.Add({Text(name), rows ? Number(*rows) : Nothing(),
                    version ? Number(*version) : Nothing(), hash.empty() ? Nothing() : Text(hash)});
  }
  report.Add("hash", unreadable.empty() ? Text(Digest(all)) : Nothing());
  report.AddListing("contents", {}) = std::move(table_list);
  if (unreadable.empty()) return;
  throw Failure{kFinding, "Missing or unreadable: " + unreadable + ".",
                "Check the file with 'wexpolctl doctor'."};
}

ExitCode Status(Call& call) {
  ReportSurroundings(call);
  ReportUsers(call);
  Database database(call.database);
  std::int64_t rows = 0;
  const auto tables = TableNames(database.handle());
  for (const std::string& table : tables) rows += CountRows(database.handle(), table).value_or(0);
  const wexpol::Text mode = wexpol::QueryText(database.handle(), "PRAGMA journal_mode");
  call.report.Add("journal mode", Text(mode.view()));
  call.report.Add("tables", Number(static_cast<std::int64_t>(tables.size())));
  call.report.Add("rows", Number(rows));
  ReportTables(database, call.report);
  return kDone;
}

}  // namespace

Command StatusCommand() {
  return {"status",
          "Show the file, who has it open, its backup, the log and what the tables hold",
          {},
          &Status};
}

}  // namespace wexpolctl
