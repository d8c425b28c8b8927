// The session itself: search, open, close, restore, check, transactions.

#include "wexpol/policydb/policy_db.h"

#include <cstring>

#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/policydb/encrypted_file.h"
#include "wexpol/policydb/facade.h"
#include "wexpol/policydb/restore.h"
#include "wexpol/records/statement.h"

namespace {

constexpr char kAccessCode[] = "60718";
constexpr wchar_t kFileName[] = L"wexpol.db";

}  // namespace

bool CPolicyDB::IsAccessCode(const char* text) noexcept {
  return text && std::strcmp(text, kAccessCode) == 0;
}

void CPolicyDB::OpenFirstFound() noexcept {
  const int code = wexpol::Ask(SQLITE_NOMEM, [&] { return TryInTurn(); });
  if (code != SQLITE_OK) {
    wexpol::LogMessage("SQLite error: %d : %s", code, sqlite3_errmsg(handle()));
  }
}

CPolicyDB::CPolicyDB(const CPolicyDB& other) = default;
CPolicyDB& CPolicyDB::operator=(const CPolicyDB& other) = default;
CPolicyDB::~CPolicyDB() { CloseDB(); }

int CPolicyDB::OpenIfThere(const std::wstring& path, int code) {
  return DoesFileExist(path.c_str()) ? OpenDB(path.c_str(), m_openFlags, m_busyTimeoutMs) : code;
}

// The answer is the code of the last open that was tried.
int CPolicyDB::TryInTurn() {
  int code = SQLITE_CANTOPEN;
  const std::wstring beside = wexpol::ReplaceFileName(wexpol::ExecutablePath(), kFileName);
  if (!beside.empty()) code = OpenIfThere(beside, code);
  if (code != SQLITE_OK) code = OpenIfThere(kFileName, code);
  const std::wstring database = CFilePaths::GetLocationDB();
  if (code != SQLITE_OK) code = OpenIfThere(database, code);
  if (code == SQLITE_OK) return code;

  const std::wstring backup = CFilePaths::GetLocationBackupDB();
  if (DoesFileExist(backup.c_str()) && wexpol::RestoreFile(backup, database, m_busyTimeoutMs)) {
    code = OpenDB(database.c_str(), m_openFlags, m_busyTimeoutMs);
  }
  return code;
}

int CPolicyDB::OpenDB(const wchar_t* path, int openFlags, int busyTimeoutMs) {
  m_db.reset();
  return wexpol::Ask(
      SQLITE_NOMEM, [&] { return wexpol::Connection::Open(path, openFlags, busyTimeoutMs, m_db); });
}

void CPolicyDB::CloseDB() {
  if (m_db) m_db->Close();
  m_db.reset();
}

bool CPolicyDB::IsValidDB() const { return handle() != nullptr; }

sqlite3* CPolicyDB::handle() const { return m_db ? m_db->handle() : nullptr; }

bool CPolicyDB::RestoreDB() {
  CloseDB();
  return wexpol::Ask([&] {
    const std::wstring database = CFilePaths::GetLocationDB();
    const std::wstring backup = CFilePaths::GetLocationBackupDB();
    // What became of it shows in the file: the answer only tells whether that can be opened.
    if (DoesFileExist(backup.c_str())) {
      static_cast<void>(wexpol::RestoreFile(backup, database, m_busyTimeoutMs));
    }
    return OpenDB(database.c_str(), m_openFlags, m_busyTimeoutMs) == SQLITE_OK;
  });
}

bool CPolicyDB::CheckIntegrity() {
  return wexpol::Ask([&] { return wexpol::IsSound(handle()); });
}

bool CPolicyDB::Transaction(TRANSACTION step) {
  switch (step) {
    case TRANSACTION_BEGIN:
      // Not valid SQL: it always fails, and is run ahead of the pragma all the same.
      sqlite3_exec(handle(), "accounts", nullptr, nullptr, nullptr);
      sqlite3_exec(handle(), "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
      return wexpol::Execute(handle(), "BEGIN TRANSACTION;");
    case TRANSACTION_COMMIT:
      return wexpol::Execute(handle(), "COMMIT;");
    case TRANSACTION_ROLLBACK:
      return wexpol::Execute(handle(), "ROLLBACK;");
  }
  return false;
}

const std::string& CPolicyDB::GetError() const { return m_error; }

bool CPolicyDB::DoesFileExist(const wchar_t* path) { return path && wexpol::FileExists(path); }
