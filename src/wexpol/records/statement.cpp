#include "wexpol/records/statement.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "wexpol/platform/text.h"
#include "wexpol/records/statement_cache.h"

namespace wexpol {
namespace {

constexpr char kCacheName[] = "records.statements";

}  // namespace

StatementCache::~StatementCache() {
  for (Slot& slot : slots_) sqlite3_finalize(slot.idle);
}

StatementCache* StatementCache::Of(sqlite3* db) {
  return db ? static_cast<StatementCache*>(sqlite3_get_clientdata(db, kCacheName)) : nullptr;
}

StatementCache::Slot& StatementCache::SlotAt(const char* text, std::size_t probe) {
  const auto address = reinterpret_cast<std::uintptr_t>(text);
  const std::size_t home = (address >> 3) ^ (address >> 11);
  return slots_[(home + probe) % kSlots];
}

sqlite3_stmt* StatementCache::Take(const char* text) {
  for (std::size_t probe = 0; probe < kProbes; ++probe) {
    Slot& slot = SlotAt(text, probe);
    if (slot.text == text && slot.idle) return std::exchange(slot.idle, nullptr);
  }
  return nullptr;
}

void StatementCache::Give(const char* text, sqlite3_stmt* statement) {
  Slot* place = &SlotAt(text, 0);  // When all are taken, the first gives way.
  for (std::size_t probe = 0; probe < kProbes; ++probe) {
    Slot& slot = SlotAt(text, probe);
    if (slot.idle) continue;
    place = &slot;
    break;
  }
  sqlite3_finalize(place->idle);
  *place = {text, statement};
}

const char* StatementCache::Intern(const std::string& text) {
  const auto known = interned_.find(text);
  if (known != interned_.end()) return known->c_str();
  if (interned_.size() >= kMaxInterned) return nullptr;
  return interned_.insert(text).first->c_str();
}

void EnableStatementCache(sqlite3* db) {
  if (StatementCache::Of(db)) return;
  sqlite3_set_clientdata(db, kCacheName, new StatementCache,
                         [](void* cache) { delete static_cast<StatementCache*>(cache); });
}

void DropStatementCache(sqlite3* db) {
  if (db) sqlite3_set_clientdata(db, kCacheName, nullptr, nullptr);
}

void Statement::Prepare(Source source) {
  if (!db_) {
    code_ = SQLITE_MISUSE;
    return;
  }
  if (StatementCache* cache = source.kept ? StatementCache::Of(db_) : nullptr) {
    kept_text_ = source.text;
    stmt_ = cache->Take(source.text);
    if (stmt_) return;
  }
  const unsigned flags = kept_text_ ? SQLITE_PREPARE_PERSISTENT : 0;
  code_ = sqlite3_prepare_v3(db_, source.text, -1, flags, &stmt_, nullptr);
}

Statement::Source Statement::Intern(sqlite3* db, const std::string& text) {
  StatementCache* cache = StatementCache::Of(db);
  const char* interned = cache ? cache->Intern(text) : nullptr;
  return {interned ? interned : text.c_str(), interned != nullptr};
}

Statement::~Statement() {
  if (!stmt_) return;
  StatementCache* cache = kept_text_ ? StatementCache::Of(db_) : nullptr;
  if (!cache) {
    sqlite3_finalize(stmt_);
    return;
  }
  Reset();
  if (sqlite3_bind_parameter_count(stmt_) > 0) sqlite3_clear_bindings(stmt_);
  cache->Give(kept_text_, stmt_);
}

void Statement::Reset() { sqlite3_reset(stmt_); }

void Statement::Bind(int index, const char* text) {
  Note(sqlite3_bind_text(stmt_, index, text, -1, SQLITE_STATIC));
}

void Statement::Bind(int index, const char* text, std::size_t size) {
  Note(sqlite3_bind_text64(stmt_, index, text, size, SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::Bind(int index, const wchar_t* text) {
  if (!text) return BindNull(index);
  const std::wstring_view wide(text);
  auto* utf8 = static_cast<char*>(sqlite3_malloc64(wide.size() * kMaxUtf8PerWide + 1));
  if (!utf8) return Note(SQLITE_NOMEM);
  const std::size_t size = WideToUtf8(wide, utf8);
  Note(sqlite3_bind_text64(stmt_, index, utf8, size, sqlite3_free, SQLITE_UTF8));
}

void Statement::Bind(int index, const void* bytes, std::size_t size) {
  Note(sqlite3_bind_blob64(stmt_, index, bytes, size, SQLITE_STATIC));
}

void Statement::BindCopy(int index, Blob bytes) {
  Note(sqlite3_bind_blob64(stmt_, index, bytes.data, bytes.size, SQLITE_TRANSIENT));
}

void Statement::BindCopy(int index, std::string_view text) {
  Note(sqlite3_bind_text64(stmt_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

ReadScope::ReadScope(sqlite3* db)
    : db_(db && sqlite3_get_autocommit(db) && Statement(db, "BEGIN").Done() ? db : nullptr) {}

void ReadScope::Release() {
  sqlite3* db = std::exchange(db_, nullptr);
  if (db && !Statement(db, "COMMIT").Done())
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
}

}  // namespace wexpol
