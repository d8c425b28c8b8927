// Documents into the rows of an empty table, beside
//  - naive: the document's tree, each record parsed into its class, its insert prepared anew;
//  - wrapper: another JSON library's tree, one prepared insert, each member bound by its name;
//  - json_each: the engine's own functions over the document;
//  - limit: one prepared insert, the values already in memory.

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/documents.h"
#include "tools/provision/provision.h"
#include "wexpol/records/document_table.h"
#include "wexpol/records/statement_cache.h"

namespace {

using bench::Exec;
using bench::Naive;
using bench::Ours;

// Records parsed beforehand, and the one insert they go through.
template <typename Record>
class Limit {
 public:
  Limit(sqlite3* db, const std::string& json) : db_(db) {
    wexpol::Document document;
    if (!document.Parse(json.c_str())) std::abort();
    for (const auto& value : document.root().GetArray()) {
      Row row;
      for (const auto& column : Record::Table().columns()) {
        const auto member = value.FindMember(column.name.data());
        if (member == value.MemberEnd() || member->value.IsNull()) {
          row.push_back({});
        } else if (member->value.IsString()) {
          row.push_back({member->value.GetString(), 0, true});
        } else {
          row.push_back({"",
                         member->value.IsBool() ? member->value.GetBool() : member->value.GetInt(),
                         false});
        }
      }
      rows_.push_back(std::move(row));
    }
  }

  __attribute__((noinline)) void Run() {
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db_, Record::Table().insert().text(), -1, &insert, nullptr);
    for (const Row& row : rows_) {
      int index = 0;
      for (const Value& value : row) {
        ++index;
        if (value.is_text) {
          sqlite3_bind_text(insert, index, value.text.data(), static_cast<int>(value.text.size()),
                            SQLITE_STATIC);
        } else if (value.is_null) {
          sqlite3_bind_null(insert, index);
        } else {
          sqlite3_bind_int(insert, index, value.number);
        }
      }
      sqlite3_step(insert);
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
  }

 private:
  struct Value {
    Value() : is_null(true) {}
    Value(std::string t, int n, bool is_string)
        : text(std::move(t)), number(n), is_text(is_string) {}
    std::string text;
    int number = 0;
    bool is_text = false;
    bool is_null = false;
  };
  using Row = std::vector<Value>;

  sqlite3* db_;
  std::vector<Row> rows_;
};

// What a careful host writes today: a statement that binds what a value is and throws.
class Insert {
 public:
  Insert(sqlite3* db, const char* text) {
    Check(sqlite3_prepare_v2(db, text, -1, &statement_, nullptr));
  }
  ~Insert() { sqlite3_finalize(statement_); }
  Insert(const Insert&) = delete;
  Insert& operator=(const Insert&) = delete;

  void Bind(int index, const nlohmann::json& value) {
    if (value.is_string()) {
      const auto& text = value.get_ref<const std::string&>();
      Check(sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()),
                              SQLITE_STATIC));
    } else if (value.is_boolean()) {
      Check(sqlite3_bind_int(statement_, index, value.get<bool>()));
    } else {
      Check(sqlite3_bind_int64(statement_, index, value.get<std::int64_t>()));
    }
  }
  void Run() {
    if (sqlite3_step(statement_) != SQLITE_DONE) throw std::runtime_error("insert");
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }

 private:
  static void Check(int code) {
    if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errstr(code));
  }
  sqlite3_stmt* statement_ = nullptr;
};

void Wrapper(sqlite3* db, const wexpol::Table& table, const std::string& json) {
  const auto document = nlohmann::json::parse(json);
  Insert insert(db, table.insert().text());
  std::vector<std::string> names;
  for (const auto& column : table.columns()) names.emplace_back(column.name);
  for (const auto& record : document) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const auto member = record.find(names[i]);
      if (member != record.end() && !member->is_null()) {
        insert.Bind(static_cast<int>(i) + 1, *member);
      }
    }
    insert.Run();
  }
}

// The engine's own way from a document to rows.
template <typename Record>
void JsonEach(sqlite3* db, const std::string& json) {
  std::string columns;
  std::string members;
  for (const auto& column : Record::Table().columns()) {
    columns.append(columns.empty() ? "" : ",").append(column.name);
    members.append(members.empty() ? "value->>'$." : ",value->>'$.").append(column.name) += "'";
  }
  const std::string sql = std::string("INSERT INTO ") + Record::Table().name() + "(" + columns +
                          ") SELECT " + members + " FROM json_each(?)";
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(db, sql.c_str(), -1, &insert, nullptr);
  sqlite3_bind_text(insert, 1, json.data(), static_cast<int>(json.size()), SQLITE_STATIC);
  if (sqlite3_step(insert) != SQLITE_DONE) std::abort();
  sqlite3_finalize(insert);
}

// Each round inserts into an empty table within a transaction that is then rolled back.
template <typename Record>
void SynchroniseEmpty(benchmark::State& state, std::string (*make)(int)) {
  bench::Database database;
  const std::string json = make(static_cast<int>(state.range(0)));
  sqlite3* plain = database.handle();
  sqlite3* cached = wexpol::OpenKeyed(database.path(), SQLITE_OPEN_READWRITE);
  wexpol::EnableStatementCache(cached);
  wexpol::EnableDocumentTable(cached);
  Limit<Record> limit(plain, json);
  const auto restart = [&] {
    for (sqlite3* db : {plain, cached}) {
      if (!sqlite3_get_autocommit(db)) Exec(db, "ROLLBACK");
    }
  };
  const auto begin = [&](sqlite3* db) { return [&restart, db] { restart(), Exec(db, "BEGIN"); }; };
  bench::Compare(state,
                 {{"ours", [&] { Ours<Record>(cached, json); }, begin(cached)},
                  {"naive", [&] { Naive<Record>(plain, json); }, begin(plain)},
                  {"wrapper", [&] { Wrapper(plain, Record::Table(), json); }, begin(plain)},
                  {"json_each", [&] { JsonEach<Record>(plain, json); }, begin(plain)},
                  {"limit", [&] { limit.Run(); }, begin(plain)}},
                 1, static_cast<int>(state.range(1)));
  restart();
  wexpol::DropStatementCache(cached);
  sqlite3_close(cached);
}

void SynchroniseAccounts(benchmark::State& state) {
  SynchroniseEmpty<bench::CPlainAccount>(state, bench::Accounts);
}
void SynchroniseCategories(benchmark::State& state) {
  SynchroniseEmpty<CCategory>(state, bench::Categories);
}
void SynchroniseDevices(benchmark::State& state) {
  SynchroniseEmpty<CDevice>(state, bench::Devices);
}

BENCHMARK(SynchroniseAccounts)->Args({100000, 31})->Iterations(1);
BENCHMARK(SynchroniseCategories)->Args({100000, 31})->Iterations(1);
BENCHMARK(SynchroniseDevices)->Args({100000, 31})->Iterations(1);
// Flat: the ratio to the limit does not grow with the document.
BENCHMARK(SynchroniseAccounts)
    ->Args({1000, 101})
    ->Args({10000, 31})
    ->Args({1000000, 5})
    ->Iterations(1);
// One round of few records, for counting instructions; see scripts/figures.
BENCHMARK(SynchroniseAccounts)->Args({10000, 1})->Iterations(1);
BENCHMARK(SynchroniseCategories)->Args({10000, 1})->Iterations(1);
BENCHMARK(SynchroniseDevices)->Args({10000, 1})->Iterations(1);

}  // namespace
