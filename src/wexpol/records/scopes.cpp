#include "wexpol/records/scopes.h"

#include "wexpol/records/statement_cache.h"

namespace wexpol {
namespace {

// Whether the caller has a transaction open; one that is owed is none.
bool IsInTransaction(sqlite3* db) {
  StatementCache* cache = StatementCache::Of(db);
  if (cache && cache->Settle(db) != SQLITE_OK) return false;
  return db && !sqlite3_get_autocommit(db);
}

// Ends a transaction by `end`; what stays open is owed.
bool End(sqlite3* db, Statement& end) {
  const bool done = end.StepDone();
  end.Reset();
  StatementCache* cache = sqlite3_get_autocommit(db) ? nullptr : StatementCache::Of(db);
  if (cache) cache->OweRollback();
  return done;
}

}  // namespace

ReadScope::ReadScope(sqlite3* db) : db_(db) {
  if (!db || IsInTransaction(db)) return;
  end_.emplace(db, Sql("COMMIT"));
  if (!end_->ok() || !Statement(db, "BEGIN").StepDone()) end_.reset();
}

void ReadScope::Release() {
  if (end_) End(db_, *end_);
  end_.reset();
}

WriteScope::WriteScope(sqlite3* db) : db_(db) {
  if (IsInTransaction(db)) return;
  commit_.emplace(db, Sql("COMMIT"));
  rollback_.emplace(db, Sql("ROLLBACK"));
  for (const auto* end : {&commit_, &rollback_}) {
    if (ok()) code_ = (*end)->code();
  }
  if (!ok()) return;
  const int code = Statement(db, "BEGIN IMMEDIATE").Step();
  open_ = code == SQLITE_DONE;
  if (!open_) code_ = code;
}

WriteScope::~WriteScope() {
  if (open_) End(db_, *rollback_);
}

bool WriteScope::Commit() {
  if (!ok()) return false;
  if (open_ && !commit_->StepDone()) return false;
  open_ = false;
  return true;
}

Savepoint::Savepoint(sqlite3* db)
    : db_(db),
      within_(IsInTransaction(db)),
      rollback_(db, "ROLLBACK TO wexpol"),
      release_(db, "RELEASE wexpol"),
      code_(rollback_.ok() ? release_.code() : rollback_.code()) {
  if (!ok()) return;
  const int code = Statement(db, "SAVEPOINT wexpol").Step();
  open_ = code == SQLITE_DONE;
  if (!open_) code_ = code;
}

Savepoint::~Savepoint() {
  if (!open_ || LostTransaction()) return;
  static_cast<void>(rollback_.Step());
  static_cast<void>(within_ ? release_.StepDone() : End(db_, release_));
}

int Savepoint::Commit() {
  if (!ok()) return code_;
  const int code = release_.Step();
  release_.Reset();
  open_ = code != SQLITE_DONE;
  return code;
}

bool Savepoint::LostTransaction() const { return within_ && sqlite3_get_autocommit(db_); }

}  // namespace wexpol
