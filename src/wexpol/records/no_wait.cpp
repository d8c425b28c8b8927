#include "wexpol/records/no_wait.h"

#include "wexpol/records/query.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {

NoWait::NoWait(sqlite3* db) : db_(db) {
  if (!StatementCache::Of(db)) return;
  timeout_ms_ = QueryInt(db, "PRAGMA busy_timeout").value_or(0);
  if (timeout_ms_ > 0) sqlite3_busy_timeout(db, 0);
}

NoWait::~NoWait() {
  if (timeout_ms_ > 0) sqlite3_busy_timeout(db_, timeout_ms_);
}

}  // namespace wexpol
