// The C interface: the library and the session.

#include "wexpol/c_api/session.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"

namespace wexpol {

void HandOver(std::string_view text, char** out) {
  if (!out) return;
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (!copy) throw std::bad_alloc();
  text.copy(copy, text.size());
  copy[text.size()] = '\0';
  *out = copy;
}

int EngineFailure(wexpol_session& session) {
  sqlite3* db = HandleOf(session.db);
  const int code = db ? sqlite3_errcode(db) : SQLITE_MISUSE;
  const bool engines = code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE;
  return Failure(session, engines ? FailureObject(db, code)
                                  : ErrorObject(SQLITE_ERROR, "the operation was refused"));
}

int Failure(wexpol_session& session, const std::string& error) {
  session.error = error;
  int code;
  return std::sscanf(error.c_str(), "{\"code\": %d", &code) == 1 ? code : SQLITE_ERROR;
}

namespace {

int Step(wexpol_session* session, TRANSACTION step) {
  return RunSession(session, nullptr, [&](CPolicyDB& db) { return db.Transaction(step); });
}

// Where the constructor searches the file it cannot say why it found none.
std::unique_ptr<wexpol_session> Open(const char* access_code, const char* path, int flags,
                                     int busy_timeout_ms) {
  if (!path)
    return std::unique_ptr<wexpol_session>(
        new wexpol_session{CPolicyDB(access_code, flags, busy_timeout_ms), {}});
  return std::unique_ptr<wexpol_session>(new wexpol_session{
      CPolicyDB(access_code, Utf8ToWide(path).c_str(), flags, busy_timeout_ms), {}});
}

}  // namespace
}  // namespace wexpol

const char* wexpol_version(void) { return WEXPOL_VERSION; }

void wexpol_free(char* text) { std::free(text); }

int wexpol_redirect_machine(const char* folder) {
  if (!folder) return SQLITE_MISUSE;
  return wexpol::Ask(SQLITE_NOMEM, [&] {
    wexpol::RedirectMachine(wexpol::Utf8ToWide(folder));
    return SQLITE_OK;
  });
}

int wexpol_open(wexpol_session** session, const char* access_code, const char* path, int read_only,
                int busy_timeout_ms) {
  if (!session) return SQLITE_MISUSE;
  *session = nullptr;
  try {
    auto opened =
        wexpol::Open(access_code, path, read_only ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE,
                     busy_timeout_ms);
    const bool valid = opened->db.IsValidDB();
    if (!valid) opened->error = wexpol::FailureObject(nullptr, SQLITE_CANTOPEN);
    *session = opened.release();
    return valid ? SQLITE_OK : SQLITE_CANTOPEN;
  } catch (int) {
    return SQLITE_AUTH;
  } catch (...) {
    return SQLITE_NOMEM;
  }
}

void wexpol_close(wexpol_session* session) { delete session; }

const char* wexpol_error(const wexpol_session* session) {
  return session ? session->error.c_str() : "";
}

int wexpol_is_provisioned(wexpol_session* session) {
  return wexpol::AskSession(session, 0, nullptr, [](CPolicyDB& db) { return db.IsProvisioned(); });
}

int wexpol_check(wexpol_session* session) {
  return wexpol::AskSession(session, 0, nullptr, [](CPolicyDB& db) { return db.CheckIntegrity(); });
}

int wexpol_restore(wexpol_session* session) {
  if (!session) return SQLITE_MISUSE;
  return wexpol::Ask(SQLITE_NOMEM, [&]() -> int {
    if (session->db.RestoreDB()) return SQLITE_OK;
    return wexpol::Failure(*session, wexpol::FailureObject(nullptr, SQLITE_CANTOPEN));
  });
}

int wexpol_begin(wexpol_session* session) { return wexpol::Step(session, TRANSACTION_BEGIN); }
int wexpol_commit(wexpol_session* session) { return wexpol::Step(session, TRANSACTION_COMMIT); }
int wexpol_roll_back(wexpol_session* session) {
  return wexpol::Step(session, TRANSACTION_ROLLBACK);
}
