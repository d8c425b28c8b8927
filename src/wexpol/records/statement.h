// Prepared statements: bound by type, kept per connection.

#ifndef WEXPOL_RECORDS_STATEMENT_H_
#define WEXPOL_RECORDS_STATEMENT_H_

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "wexpol/records/text.h"

namespace wexpol {

// The text of a statement that lives as long as the program, so that its address identifies it.
class Sql {
 public:
  consteval Sql(const char* literal) : text_(literal) {}
  // `text` must never be destroyed or changed.
  static Sql Permanent(const std::string& text) { return {text.c_str(), 0}; }

  const char* text() const { return text_; }

 private:
  Sql(const char* text, int) : text_(text) {}
  const char* text_;
};

// A blob as an argument of a statement; null data is bound as NULL.
struct Blob {
  const void* data;
  std::size_t size;
};

// One prepared statement, borrowed from the connection's statement cache or, where the connection
// has none, prepared here. The destructor leaves it reset with its bindings cleared, so neither a
// read lock nor a value outlives its use.
//
// The first failure sticks: after a failed preparation or bind, Step answers that code. Parameters
// are numbered from 1 and columns from 0. Texts and blobs are bound without a copy and must outlive
// the last step.
class Statement {
 public:
  template <typename... Args>
  Statement(sqlite3* db, Sql sql, const Args&... args)
      : Statement(Source{sql.text(), true}, db, args...) {}
  // A statement whose text is put together at run time.
  template <typename... Args>
  static Statement Composed(sqlite3* db, const std::string& text, const Args&... args) {
    return Statement(Intern(db, text), db, args...);
  }
  ~Statement();

  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool ok() const { return code_ == SQLITE_OK; }
  int code() const { return code_; }

  void BindNull(int index) { Note(sqlite3_bind_null(stmt_, index)); }
  void Bind(int index, std::int32_t value) { Note(sqlite3_bind_int(stmt_, index, value)); }
  void Bind(int index, std::int64_t value) { Note(sqlite3_bind_int64(stmt_, index, value)); }
  // A null pointer is bound as NULL.
  void Bind(int index, const char* text);
  void Bind(int index, const char* text, std::size_t size);
  void Bind(int index, const wchar_t* text);
  void Bind(int index, const void* bytes, std::size_t size);
  // The same with a copy, for what does not outlive the step.
  void BindCopy(int index, std::string_view text);
  void BindCopy(int index, Blob bytes);

  int Step() { return ok() ? sqlite3_step(stmt_) : code_; }
  bool Row() { return Step() == SQLITE_ROW; }
  bool Done() { return Step() == SQLITE_DONE; }
  // Makes the statement ready for another round; the bindings stay.
  void Reset();

  bool IsNull(int column) const { return sqlite3_column_type(stmt_, column) == SQLITE_NULL; }
  std::int32_t Int(int column) const { return sqlite3_column_int(stmt_, column); }
  std::int64_t Int64(int column) const { return sqlite3_column_int64(stmt_, column); }
  // Null for NULL; valid until the next step.
  const char* Text(int column) const {
    return reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
  }
  sqlite3_stmt* get() const { return stmt_; }

 private:
  struct Source {
    const char* text;
    bool kept;  // In the cache of the connection, by the address of the text.
  };

  template <typename... Args>
  Statement(Source source, sqlite3* db, const Args&... args) : db_(db) {
    Prepare(source);
    [[maybe_unused]] int index = 0;
    if (ok()) (BindOne(++index, args), ...);
  }
  void Prepare(Source source);
  static Source Intern(sqlite3* db, const std::string& text);

  void BindOne(int index, const char* text) { Bind(index, text); }
  void BindOne(int index, const wchar_t* text) { Bind(index, text); }
  void BindOne(int index, const std::string& text) { Bind(index, text.data(), text.size()); }
  template <typename Integer>
  requires std::is_integral_v<Integer> || std::is_enum_v<Integer>
  void BindOne(int index, Integer value) { Bind(index, static_cast<std::int64_t>(value)); }
  void BindOne(int index, Blob bytes) { Bind(index, bytes.data, bytes.size); }

  void Note(int code) {
    if (code_ == SQLITE_OK) code_ = code;
  }

  const char* kept_text_ = nullptr;  // Names the statement in the cache; null for one of its own.
  sqlite3* db_;
  sqlite3_stmt* stmt_ = nullptr;
  int code_ = SQLITE_OK;
};

// Gives `db` a statement cache, which then belongs to the connection.
void EnableStatementCache(sqlite3* db);

// Finalizes the kept statements. To be called before sqlite3_close, which refuses a connection that
// still has statements.
void DropStatementCache(sqlite3* db);

// Holds one consistent read of the file for a question of several statements: nothing changes
// between them, and the file is locked and checked once. Does nothing within a transaction of the
// caller. To be released before anything is written.
class ReadScope {
 public:
  explicit ReadScope(sqlite3* db);
  ~ReadScope() { Release(); }
  void Release();

  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;

 private:
  sqlite3* db_;  // Null when there is nothing to release.
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_STATEMENT_H_
