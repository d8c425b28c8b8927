// Prepared statements: bound by type, kept per connection.

#ifndef WEXPOL_RECORDS_STATEMENT_H_
#define WEXPOL_RECORDS_STATEMENT_H_

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace wexpol {

class StatementCache;

// The text of a statement that lives as long as the program, so that its address identifies it: a
// literal, or what a table hands out. A literal begins with one of the words below, by which the
// tests find every statement of the sources.
class Sql {
 public:
  consteval Sql(const char* literal) : text_(literal) {
    if (!IsStatement(literal)) throw "no statement that the tests would find";
  }

  const char* text() const { return text_; }

 private:
  friend class Table;
  explicit Sql(const std::string& permanent) : text_(permanent.c_str()) {}

  static constexpr bool IsStatement(std::string_view text) {
    for (const std::string_view word : {"SELECT ", "INSERT ", "UPDATE ", "DELETE ", "PRAGMA ",
                                        "BEGIN", "COMMIT", "ROLLBACK", "SAVEPOINT ", "RELEASE "}) {
      if (text.starts_with(word)) return true;
    }
    return false;
  }

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
// The first failure sticks: after a failed preparation or bind, each step answers that code.
// Parameters are numbered from 1 and columns from 0. Texts and blobs are bound without a copy and
// must outlive the last step.
class Statement {
 public:
  template <typename... Args>
  Statement(sqlite3* db, Sql sql, const Args&... args) : db_(db), fixed_text_(sql.text()) {
    Prepare(sql.text());
    BindAll(args...);
  }
  // A statement whose text is put together at run time.
  template <typename... Args>
  static Statement Composed(sqlite3* db, const std::string& text, const Args&... args) {
    return Statement(text, db, args...);
  }
  ~Statement();

  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  [[nodiscard]] bool ok() const { return code_ == SQLITE_OK; }
  int code() const { return code_; }

  void BindNull(int index) { Note(sqlite3_bind_null(stmt_, index)); }
  void Bind(int index, std::int32_t value) { Note(sqlite3_bind_int(stmt_, index, value)); }
  void Bind(int index, std::int64_t value) { Note(sqlite3_bind_int64(stmt_, index, value)); }
  // A null pointer is bound as NULL.
  void Bind(int index, const char* text);
  void Bind(int index, std::string_view text);
  void Bind(int index, const wchar_t* text);
  void Bind(int index, Blob bytes);
  // The same with a copy, for what does not outlive the step.
  void BindCopy(int index, std::string_view text);
  void BindCopy(int index, Blob bytes);
  // For a table function that takes a pointer of this type, a text as lasting as the program.
  void BindPointer(int index, void* pointer, const char* type) {
    Note(sqlite3_bind_pointer(stmt_, index, pointer, type, nullptr));
  }

  // SQLITE_ROW, SQLITE_DONE or what went wrong.
  [[nodiscard]] int Step() { return ok() ? sqlite3_step(stmt_) : code_; }
  // Steps, and says whether there is a row.
  [[nodiscard]] bool StepRow() { return Step() == SQLITE_ROW; }
  // Steps, and says whether the statement has run to its end.
  [[nodiscard]] bool StepDone() { return Step() == SQLITE_DONE; }
  // Makes the statement ready for another round; the bindings stay.
  void Reset();

  // Of the row that the last step came to.
  bool IsNull(int column) const { return sqlite3_column_type(stmt_, column) == SQLITE_NULL; }
  std::int32_t Int(int column) const { return sqlite3_column_int(stmt_, column); }
  std::int64_t Int64(int column) const { return sqlite3_column_int64(stmt_, column); }
  // Null for NULL; valid until the next step.
  const char* Text(int column) const {
    return reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
  }
  sqlite3_stmt* get() const { return stmt_; }

 private:
  template <typename... Args>
  Statement(const std::string& text, sqlite3* db, const Args&... args) : db_(db) {
    Prepare(text.c_str());
    BindAll(args...);
  }
  void Prepare(const char* text);

  template <typename... Args>
  void BindAll(const Args&... args) {
    [[maybe_unused]] int index = 0;
    if (ok()) (BindOne(++index, args), ...);
  }
  template <typename Integer>
  requires std::is_integral_v<Integer> || std::is_enum_v<Integer>
  void BindOne(int index, Integer value) { Bind(index, static_cast<std::int64_t>(value)); }
  void BindOne(int index, const char* text) { Bind(index, text); }
  void BindOne(int index, const wchar_t* text) { Bind(index, text); }
  void BindOne(int index, const std::string& text) { Bind(index, std::string_view(text)); }
  void BindOne(int index, Blob bytes) { Bind(index, bytes); }

  void Note(int code) {
    if (code_ == SQLITE_OK) code_ = code;
  }

  sqlite3* db_;
  const char* fixed_text_ = nullptr;  // Null where the text was put together at run time.
  StatementCache* cache_ = nullptr;   // Where the statement goes back to.
  sqlite3_stmt* stmt_ = nullptr;
  int code_ = SQLITE_OK;
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_STATEMENT_H_
