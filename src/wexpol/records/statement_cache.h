// The prepared statements of one connection that are not in use.

#ifndef WEXPOL_RECORDS_STATEMENT_CACHE_H_
#define WEXPOL_RECORDS_STATEMENT_CACHE_H_

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace wexpol {

// One in use is not in here, so a nested use of the same text gets a statement of its own. The
// number kept is bounded; what finds no place is finalized.
class StatementCache {
 public:
  StatementCache() = default;
  ~StatementCache();

  StatementCache(const StatementCache&) = delete;
  StatementCache& operator=(const StatementCache&) = delete;

  // Null when the connection has none.
  static StatementCache* Of(sqlite3* db);

  // An idle statement of a text that lives as long as the program, found by the text's address. It
  // is the caller's from now on; null when there is none.
  sqlite3_stmt* Take(const char* text);
  // Takes a reset statement back.
  void Give(const char* text, sqlite3_stmt* statement);

  // The same of a text put together at run time, found by what it says. Of these only the ones used
  // last are kept.
  sqlite3_stmt* TakeComposed(std::string_view text);
  void GiveComposed(sqlite3_stmt* statement);

  // A transaction that could not be ended is rolled back before anything else is done. Settle
  // answers SQLITE_OK when there is none any more.
  void OweRollback() { owes_rollback_ = true; }
  int Settle(sqlite3* db) { return owes_rollback_ ? RollBack(db) : SQLITE_OK; }

 private:
  struct Fixed {
    const char* text = nullptr;
    sqlite3_stmt* idle = nullptr;
  };
  struct Composed {
    std::size_t hash = 0;
    std::uint64_t given = 0;  // The youngest has the highest number.
    sqlite3_stmt* idle = nullptr;
  };
  static constexpr std::size_t kFixed = 512;  // A power of two.
  static constexpr std::size_t kProbes = 8;
  static constexpr std::size_t kComposed = 64;

  Fixed& FixedAt(const char* text, std::size_t probe);
  int RollBack(sqlite3* db);

  std::array<Fixed, kFixed> fixed_;
  std::array<Composed, kComposed> composed_;
  std::uint64_t given_ = 0;
  bool owes_rollback_ = false;
};

// Gives `db` a statement cache, which then belongs to the connection.
void EnableStatementCache(sqlite3* db);

// Finalizes the kept statements. To be called before sqlite3_close, which refuses a connection that
// still has statements.
void DropStatementCache(sqlite3* db);

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_STATEMENT_CACHE_H_
