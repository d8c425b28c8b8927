#include "tools/wexpolctl/database.h"

#include <filesystem>
#include <sstream>
#include <system_error>

#include "tools/wexpolctl/command.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/catalog/catalog.h"
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
  ForEachRow(select, [&] { names.emplace_back(select.Text(column)); });
  return names;
}

std::string AdviceForLost(const std::wstring& path) {
  return wexpol::FileExists(BackupPathOf(path))
             ? "Put the backup in its place with 'wexpolctl restore'."
             : "Make an empty one with 'wexpolctl init --force', or name another file with --db.";
}

const std::wstring& Existing(const std::wstring& path) {
  const std::string file = wexpol::WideToUtf8(path);
  std::error_code error;
  const auto type = std::filesystem::status(ToPath(path), error).type();
  if (type == std::filesystem::file_type::not_found) {
    throw LostFile{{kCannotOpen, "There is no database at " + file + ".",
                    wexpol::FileExists(BackupPathOf(path))
                        ? AdviceForLost(path)
                        : "Make an empty one with 'wexpolctl init', or name another file with "
                          "--db."}};
  }
  return path;
}

[[noreturn]] void ThrowUnreadable(const std::wstring& path, int code) {
  const std::string file = wexpol::WideToUtf8(path);
  switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw Failure{kCannotOpen, "Another process keeps " + file + " locked.",
                    "Try again, or stop the agent's processes first."};
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      throw LostFile{
          {kCannotOpen, file + " is damaged or was made with another key.", AdviceForLost(path)}};
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
      throw Failure{kCannotOpen, "This user may not open " + file + ".",
                    "Run it as a user who may, or name a copy with --db."};
    default:
      throw Failure{kCannotOpen, file + " cannot be opened: " + sqlite3_errstr(code) + ".",
                    "Check the path, and whether this user may use the file and those beside it."};
  }
}

bool CanPrepare(sqlite3* db, const char* sql) { return wexpol::Statement::Composed(db, sql).ok(); }

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
    throw LostFile{
        {kCannotOpen, wexpol::WideToUtf8(path) + " has no tables.", AdviceForLost(path)}};
  }
  if (use != kAsk) return;
  const auto findings = Findings(handle());
  if (findings.empty()) return;
  throw LostFile{{kFinding,
                  wexpol::WideToUtf8(path) + " is damaged or incomplete: " + findings.front() + ".",
                  AdviceForLost(path)}};
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

void RequireDone(int code) {
  if (code == SQLITE_DONE) return;
  throw Failure{kFinding,
                std::string("The rows cannot be read to their end: ") + sqlite3_errstr(code) + ".",
                "Check the file with 'wexpolctl check'."};
}

std::vector<std::string> Findings(sqlite3* db) {
  wexpol::Statement check(db, "PRAGMA integrity_check(20)");
  std::vector<std::string> findings;
  int code;
  while ((code = check.Step()) == SQLITE_ROW) {
    // A finding may be several, below a headline.
    std::istringstream lines(check.Text(0));
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("***")) findings.push_back(line);
    }
  }
  if (code != SQLITE_DONE) findings.emplace_back(sqlite3_errmsg(db));
  if (findings == std::vector<std::string>{"ok"}) findings.clear();
  if (!findings.empty() || wexpol::HasAllTables(db)) return findings;
  for (const wexpol::RecordClass* each : wexpol::AllTables()) {
    if (CanPrepare(db, each->table().select().text())) continue;
    findings.push_back(std::string("the table ") + each->table().name() +
                       " is missing or of another make");
  }
  if (findings.empty()) findings.emplace_back("the view remote_control_settings is missing");
  return findings;
}

}  // namespace wexpolctl
