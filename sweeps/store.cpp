#include "sweeps/store.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/provision/provision.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/clock_source.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"

namespace sweeps {
namespace {

// Noon of 13 March 2024.
class StillClock : public wexpol::Clock {
 public:
  std::int64_t UtcFileTime() const override { return wexpol::UnixToFileTime(1710331200); }
  std::int64_t UtcToLocal(std::int64_t utc_file_time) const override { return utc_file_time; }
  std::uint32_t TickCount() const override { return 1; }
};

constexpr int kGenerationRows = 60;

std::filesystem::path SystemPath(const std::wstring& path) {
  const std::string utf8 = wexpol::WideToUtf8(path);
  return std::u8string(utf8.begin(), utf8.end());
}

std::wstring NewFolder() {
  std::random_device random;
  const auto folder = std::filesystem::temp_directory_path() /
                      ("wexpol-sweep-" + std::to_string(random()) + std::to_string(random()));
  if (!std::filesystem::create_directory(folder)) std::abort();
  return folder.wstring();
}

// The first column of the first row; nothing when there is none or it is NULL.
std::optional<std::string> FirstText(sqlite3* db, const std::string& select) {
  sqlite3_stmt* statement = nullptr;
  std::optional<std::string> text;
  sqlite3_prepare_v2(db, select.c_str(), -1, &statement, nullptr);
  if (statement && sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_text(statement, 0)) {
    text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
  }
  sqlite3_finalize(statement);
  return text;
}

constexpr const char* kGenerationTables[] = {"logins", "device_groups", "devices"};

bool AppendRows(sqlite3* db, const wexpol::Table& table, Rows& rows) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db, table.select().text(), -1, &statement, nullptr) != SQLITE_OK) {
    return false;
  }
  int code = SQLITE_ROW;
  while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
    std::string row = table.name();
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
      row += '|';
      if (sqlite3_column_type(statement, i) == SQLITE_NULL) continue;
      row += '\'';
      row.append(static_cast<const char*>(sqlite3_column_blob(statement, i)),
                 static_cast<std::size_t>(sqlite3_column_bytes(statement, i)));
    }
    rows.push_back(std::move(row));
  }
  sqlite3_finalize(statement);
  return code == SQLITE_DONE;
}

}  // namespace

Store::Store() : folder_(NewFolder()) {
  static const StillClock clock;
  wexpol::RedirectMachine(folder_);
  wexpol::SetClockForTesting(&clock);
  std::string error;
  if (!wexpol::CreateDatabase(DatabasePath(), error)) std::abort();
}

Store::~Store() {
  wexpol::DeleteRedirectedRegistry();
  wexpol::RedirectMachine(L"");
  std::error_code ignored;
  std::filesystem::remove_all(SystemPath(folder_), ignored);
}

void Store::Keep(bool also_backup) {
  if (!Execute(OpenRaw().get(), "PRAGMA wal_checkpoint(TRUNCATE)")) std::abort();
  kept_ = ReadFileBytes(DatabasePath());
  if (also_backup) backup_ = kept_;
  Reset();
}

void Store::Reset() const {
  for (const wchar_t* suffix : {L"", L"-wal", L"-shm", L"-journal"}) {
    std::error_code ignored;
    std::filesystem::remove_all(SystemPath(Beside(suffix)), ignored);
  }
  WriteFileBytes(DatabasePath(), kept_);
  WriteFileBytes(CFilePaths::GetLocationBackupDB(), backup_);
}

const std::map<std::string, std::string>& Samples() {
  static const auto samples = [] {
    std::map<std::string, std::string> result;
    for (const auto& entry :
         std::filesystem::directory_iterator(WEXPOL_SOURCE_DIR "/samples/console")) {
      result[entry.path().stem().string()] = ReadFileBytes(entry.path().wstring());
    }
    return result;
  }();
  return samples;
}

void StoreSamples() {
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 100);
  db.Transaction(TRANSACTION_BEGIN);
  for (const wexpolctl::SyncTable& table : wexpolctl::SyncTables()) {
    std::string error;
    if (!table.replace(db, Samples().at(table.name()).c_str(), error)) std::abort();
  }
  db.Transaction(TRANSACTION_COMMIT);
}

const std::wstring& DatabasePath() {
  static std::wstring path;
  path = CFilePaths::GetLocationDB();
  return path;
}

std::wstring Beside(const wchar_t* suffix) { return DatabasePath() + suffix; }

std::string ReadFileBytes(const std::wstring& path) {
  std::ifstream file(SystemPath(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void WriteFileBytes(const std::wstring& path, const std::string& bytes) {
  std::ofstream(SystemPath(path), std::ios::binary) << bytes;
}

Handle OpenRaw() { return {wexpol::OpenKeyed(DatabasePath(), kReadWrite), sqlite3_close}; }

bool Execute(sqlite3* db, const std::string& sql) {
  return sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::optional<Rows> ReadRows(sqlite3* db) {
  Rows rows;
  if (!Execute(db, "BEGIN")) return std::nullopt;
  const bool all = std::ranges::all_of(wexpol::AllTables(), [&](const wexpol::RecordClass* each) {
    return AppendRows(db, each->table(), rows);
  });
  if (!Execute(db, "COMMIT") || !all) return std::nullopt;
  std::ranges::sort(rows);
  return rows;
}

std::string GenerationDocument(long number) {
  const std::string mark = "\"g" + std::to_string(number) + '"';
  std::string document;
  for (int id = 1; id <= kGenerationRows; ++id) {
    document +=
        (id > 1 ? "," : "[") + ("{\"id\": " + std::to_string(id)) + ", \"name\": " + mark +
        ", \"policy_id\": 501, \"account_id\": 1, \"device_id\": 1, \"description\": " + mark +
        ", \"comment\": \"" + std::string(static_cast<std::size_t>(number % 7) * 40, 'x') + "\"}";
  }
  return document + "]";
}

bool StoreGeneration(CPolicyDB& db, const char* document) {
  const bool stored = db.Transaction(TRANSACTION_BEGIN) && db.ClearLogins() &&
                      db.AddLogins(document) && db.ClearDeviceGroups() &&
                      db.AddDeviceGroups(document) && db.ClearAndAddDevices(document) &&
                      db.Transaction(TRANSACTION_COMMIT);
  if (!stored) db.Transaction(TRANSACTION_ROLLBACK);
  return stored;
}

long StoredGeneration(sqlite3* db) {
  std::string select;
  for (const char* table : kGenerationTables) {
    select += (select.empty() ? "" : " UNION ALL ") + std::string("SELECT name, id FROM ") + table;
  }
  // Within one statement, and so of one read.
  const auto name =
      FirstText(db, "SELECT CASE WHEN min(name) = max(name) AND count(*) = " +
                        std::to_string(kGenerationRows * std::size(kGenerationTables)) +
                        " THEN substr(min(name), 2) END FROM (" + select + ")");
  return name ? std::strtol(name->c_str(), nullptr, 10) : -1;
}

void JudgeFile(const std::string& point, long latest, Figures& figures) {
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
  if (db.IsValidDB() && db.CheckIntegrity() && db.IsProvisioned()) {
    const Handle raw = OpenRaw();
    const long found = StoredGeneration(raw.get());
    if (found >= 0 && found <= latest) return;
    // Rows of several generations, all of which were stored once?
    const auto authentic =
        FirstText(raw.get(),
                  "SELECT count(*) FROM (SELECT name FROM logins UNION SELECT name FROM devices "
                  "UNION SELECT name FROM device_groups) WHERE substr(name, 1, 1) <> 'g' OR "
                  "CAST(substr(name, 2) AS INTEGER) NOT BETWEEN 0 AND " +
                      std::to_string(latest));
    authentic == "0" ? static_cast<void>(++figures.earlier) : figures.Add(kDamage, point);
    return;
  }
  const bool restored = db.RestoreDB() && db.CheckIntegrity() && db.IsProvisioned();
  if (!restored || StoredGeneration(OpenRaw().get()) != 0) {
    figures.Add(kDamage, point + ": not restored");
  }
}

}  // namespace sweeps
