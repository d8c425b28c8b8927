#include "wexpol/records/statement.h"

#include "wexpol/platform/text.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {

void Statement::Prepare(const char* text) {
  if (!db_) {
    code_ = SQLITE_MISUSE;
    return;
  }
  cache_ = StatementCache::Of(db_);
  if (cache_) {
    code_ = cache_->Settle(db_);
    if (!ok()) return;
    stmt_ = fixed_text_ ? cache_->Take(fixed_text_) : cache_->TakeComposed(text);
    if (stmt_) return;
  }
  const unsigned flags = cache_ ? SQLITE_PREPARE_PERSISTENT : 0;
  code_ = sqlite3_prepare_v3(db_, text, -1, flags, &stmt_, nullptr);
}

Statement::~Statement() {
  if (!stmt_) return;
  if (!cache_) {
    sqlite3_finalize(stmt_);
    return;
  }
  Reset();
  if (sqlite3_bind_parameter_count(stmt_) > 0) sqlite3_clear_bindings(stmt_);
  if (fixed_text_) {
    cache_->Give(fixed_text_, stmt_);
  } else {
    cache_->GiveComposed(stmt_);
  }
}

void Statement::Reset() { sqlite3_reset(stmt_); }

void Statement::Bind(int index, const char* text) {
  Note(sqlite3_bind_text(stmt_, index, text, -1, SQLITE_STATIC));
}

void Statement::Bind(int index, std::string_view text) {
  Note(sqlite3_bind_text64(stmt_, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::Bind(int index, const wchar_t* text) {
  if (!text) return BindNull(index);
  const std::wstring_view wide(text);
  auto* utf8 = static_cast<char*>(sqlite3_malloc64(wide.size() * kMaxUtf8PerWide + 1));
  if (!utf8) return Note(SQLITE_NOMEM);
  const std::size_t size = WideToUtf8(wide, utf8);
  Note(sqlite3_bind_text64(stmt_, index, utf8, size, sqlite3_free, SQLITE_UTF8));
}

void Statement::Bind(int index, Blob bytes) {
  Note(sqlite3_bind_blob64(stmt_, index, bytes.data, bytes.size, SQLITE_STATIC));
}

void Statement::BindCopy(int index, Blob bytes) {
  Note(sqlite3_bind_blob64(stmt_, index, bytes.data, bytes.size, SQLITE_TRANSIENT));
}

void Statement::BindCopy(int index, std::string_view text) {
  Note(sqlite3_bind_text64(stmt_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

}  // namespace wexpol
