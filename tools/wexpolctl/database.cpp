#include "tools/wexpolctl/database.h"

#include "tools/wexpolctl/command.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

constexpr char kAccessCode[] = "60718";
constexpr int kBusyTimeoutMs = 5000;

std::vector<std::string> Names(wexpol::Statement& select, int column) {
  std::vector<std::string> names;
  while (select.StepRow()) names.emplace_back(select.Text(column));
  return names;
}

const std::wstring& Existing(const std::wstring& path) {
  if (wexpol::FileExists(path)) return path;
  const bool has_backup = wexpol::FileExists(BackupPathOf(path));
  throw LostFile{
      {kCannotOpen, "There is no database at " + wexpol::WideToUtf8(path) + ".",
       has_backup ? "Take the backup with 'wexpolctl restore'."
                  : "Make an empty one with 'wexpolctl init', or name another file with --db."}};
}

[[noreturn]] void ThrowUnreadable(const std::wstring& path, int code) {
  const std::string file = wexpol::WideToUtf8(path);
  if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
    throw Failure{kCannotOpen, "Another process keeps " + file + " locked.",
                  "Try again, or stop the agent's processes first."};
  }
  if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT) {
    throw LostFile{{kCannotOpen, file + " is damaged or was made with another key.",
                    "Put the backup in its place with 'wexpolctl restore'."}};
  }
  throw Failure{kCannotOpen, file + " cannot be opened: " + sqlite3_errstr(code) + ".",
                "Check the path and whether this user may read and write the file."};
}

}  // namespace

Database::Database(const std::wstring& path, Use use)
    : session_(kAccessCode, nullptr, SQLITE_OPEN_READWRITE, kBusyTimeoutMs) {
  const std::wstring& file = Existing(path);
  int code = use == kWrite ? session_.OpenDB(file.c_str(), SQLITE_OPEN_READWRITE, kBusyTimeoutMs)
                           : wexpol::OpenUntouched(session_, file, kBusyTimeoutMs);
  if (code != SQLITE_OK) ThrowUnreadable(path, code);
  // Only the first read shows whether the key fits.
  wexpol::Statement count(handle(), "SELECT count(*) FROM sqlite_schema");
  code = count.Step();
  if (code != SQLITE_ROW) ThrowUnreadable(path, code);
  if (count.Int(0) == 0) {
    throw LostFile{{kCannotOpen, wexpol::WideToUtf8(path) + " is empty: it has no tables.",
                    "Put the backup in its place with 'wexpolctl restore', or make its tables with "
                    "'wexpolctl init --force'."}};
  }
}

sqlite3* Database::handle() const { return wexpol::HandleOf(session_); }

std::vector<std::string> TableNames(sqlite3* db, bool views) {
  wexpol::Statement select(db,
                           "SELECT name FROM sqlite_schema WHERE name NOT LIKE 'sqlite\\_%' ESCAPE "
                           "'\\' AND (type='table' OR (type='view' AND ?)) ORDER BY name",
                           views);
  return Names(select, 0);
}

std::vector<std::string> ColumnNames(sqlite3* db, const std::string& table) {
  wexpol::Statement select(db, "SELECT name FROM pragma_table_info(?)", table);
  return Names(select, 0);
}

std::string Quoted(const std::string& identifier) {
  std::string quoted = "\"";
  for (const char c : identifier) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::optional<std::int64_t> CountRows(sqlite3* db, const std::string& table) {
  auto select = wexpol::Statement::Composed(db, "SELECT count(*) FROM " + Quoted(table));
  if (!select.StepRow()) return std::nullopt;
  return select.Int64(0);
}

std::optional<long> LocalDeviceId(sqlite3* db) {
  long id;
  if (CDeviceInfo::GetDeviceID(&id)) return id;
  return wexpol::QueryInt(db, "SELECT id FROM devices WHERE token IS NOT NULL");
}

std::vector<std::string> IntegrityFindings(sqlite3* db) {
  wexpol::Statement check(db, "PRAGMA integrity_check(20)");
  std::vector<std::string> findings;
  int code;
  while ((code = check.Step()) == SQLITE_ROW) findings.emplace_back(check.Text(0));
  if (code != SQLITE_DONE) findings.emplace_back(sqlite3_errmsg(db));
  if (findings == std::vector<std::string>{"ok"}) findings.clear();
  return findings;
}

}  // namespace wexpolctl
