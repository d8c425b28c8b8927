// The prepared statements of one connection that are not in use.

#ifndef WEXPOL_RECORDS_STATEMENT_CACHE_H_
#define WEXPOL_RECORDS_STATEMENT_CACHE_H_

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <string>
#include <unordered_set>

namespace wexpol {

// Keeps statements by the address of their text. One in use is not in here, so a nested use of the
// same text gets a statement of its own. The number kept is bounded; what finds no place is
// finalized.
class StatementCache {
 public:
  StatementCache() = default;
  ~StatementCache();

  StatementCache(const StatementCache&) = delete;
  StatementCache& operator=(const StatementCache&) = delete;

  // Null when the connection has none.
  static StatementCache* Of(sqlite3* db);

  // An idle statement of this text, which is the caller's from now on; or null.
  sqlite3_stmt* Take(const char* text);
  // Takes a reset statement back.
  void Give(const char* text, sqlite3_stmt* statement);

  // The lasting copy of a text put together at run time; null when there are too many.
  const char* Intern(const std::string& text);

 private:
  struct Slot {
    const char* text = nullptr;
    sqlite3_stmt* idle = nullptr;
  };
  static constexpr std::size_t kSlots = 256;  // A power of two.
  static constexpr std::size_t kProbes = 8;
  static constexpr std::size_t kMaxInterned = 64;

  Slot& SlotAt(const char* text, std::size_t probe);

  std::array<Slot, kSlots> slots_;
  std::unordered_set<std::string> interned_;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_STATEMENT_CACHE_H_
