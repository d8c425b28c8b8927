#include "wexpol/records/statement_cache.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace wexpol {
namespace {

constexpr char kClientData[] = "wexpol.statements";

}  // namespace

StatementCache::~StatementCache() {
  for (const Fixed& each : fixed_) sqlite3_finalize(each.idle);
  for (const Composed& each : composed_) sqlite3_finalize(each.idle);
}

StatementCache* StatementCache::Of(sqlite3* db) {
  return db ? static_cast<StatementCache*>(sqlite3_get_clientdata(db, kClientData)) : nullptr;
}

StatementCache::Fixed& StatementCache::FixedAt(const char* text, std::size_t probe) {
  const auto address = reinterpret_cast<std::uintptr_t>(text);
  const std::size_t home = (address >> 3) ^ (address >> 11);
  return fixed_[(home + probe) % kFixed];
}

sqlite3_stmt* StatementCache::Take(const char* text) {
  for (std::size_t probe = 0; probe < kProbes; ++probe) {
    Fixed& place = FixedAt(text, probe);
    if (place.text == text && place.idle) return std::exchange(place.idle, nullptr);
  }
  return nullptr;
}

void StatementCache::Give(const char* text, sqlite3_stmt* statement) {
  Fixed* place = &FixedAt(text, 0);  // When all are taken, the first gives way.
  for (std::size_t probe = 0; probe < kProbes; ++probe) {
    Fixed& free = FixedAt(text, probe);
    if (free.idle) continue;
    place = &free;
    break;
  }
  sqlite3_finalize(place->idle);
  *place = {text, statement};
}

sqlite3_stmt* StatementCache::TakeComposed(std::string_view text) {
  const std::size_t hash = std::hash<std::string_view>()(text);
  for (Composed& place : composed_) {
    if (place.hash == hash && place.idle && text == sqlite3_sql(place.idle)) {
      return std::exchange(place.idle, nullptr);
    }
  }
  return nullptr;
}

void StatementCache::GiveComposed(sqlite3_stmt* statement) {
  // A free place counts as the oldest.
  Composed& place = *std::min_element(
      composed_.begin(), composed_.end(),
      [](const auto& a, const auto& b) { return (a.idle ? a.given : 0) < (b.idle ? b.given : 0); });
  sqlite3_finalize(place.idle);
  place = {std::hash<std::string_view>()(sqlite3_sql(statement)), ++given_, statement};
}

int StatementCache::RollBack(sqlite3* db) {
  const int code = sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  owes_rollback_ = !sqlite3_get_autocommit(db);
  return owes_rollback_ ? code : SQLITE_OK;
}

void EnableStatementCache(sqlite3* db) {
  if (StatementCache::Of(db)) return;
  sqlite3_set_clientdata(db, kClientData, new StatementCache,
                         [](void* cache) { delete static_cast<StatementCache*>(cache); });
}

void DropStatementCache(sqlite3* db) {
  if (db) sqlite3_set_clientdata(db, kClientData, nullptr, nullptr);
}

}  // namespace wexpol
