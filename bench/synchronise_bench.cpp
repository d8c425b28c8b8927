// Documents into rows and rows into lists, beside the naive way and the limit:
//  - naive: the document's tree, each record parsed into its class, its insert prepared anew;
//  - limit: one prepared insert, the values already in memory;
//  - json_each: the engine's own functions over the document;
//  - step and read: a list's select stepped through, each column read.

#include <cstdint>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "tools/provision/provision.h"
#include "tools/provision/schema.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"
#include "wexpol/records/document_table.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/statement_cache.h"
#include "wexpol/records/synchronise.h"

namespace {

using bench::Contender;
using bench::Devices;

// The accounts table without what an account does to the registry when it is parsed.
class CPlainAccount : public wexpol::Record<CPlainAccount, tblAccount> {
 public:
  static const wexpol::Table& Table() {
    using wexpol::Column;
    static constexpr wexpol::ColumnDef kColumns[] = {
        Column<&tblAccount::id>("id", wexpol::kKey | wexpol::kRequired),
        Column<&tblAccount::locale_id>("locale_id", wexpol::kRequired),
        Column<&tblAccount::account_status_id>("account_status_id"),
        Column<&tblAccount::time_zone_id>("time_zone_id"),
    };
    static const wexpol::Table& table = *new wexpol::Table("accounts", "account", kColumns);
    return table;
  }
};

std::string Accounts(int count) {
  std::string json = "[";
  for (int i = 1; i <= count; ++i) {
    if (i > 1) json += ",";
    json += "{\"id\": " + std::to_string(i) + ", \"locale_id\": 1033, \"account_status_id\": 1, " +
            "\"time_zone_id\": " + std::to_string(i % 139 + 1) + "}";
  }
  return json + "]";
}

std::string Categories(int count) {
  std::string json = "[";
  for (int i = 1; i <= count; ++i) {
    if (i > 1) json += ",";
    const std::string number = std::to_string(i);
    json += "{\"id\": " + number + ", \"name\": \"category " + number +
            "\", \"description\": \"what belongs to the category " + number +
            "\", \"notification\": null, \"category_type_id\": " + std::to_string(i % 9);
    for (const char* flag :
         {"client_should_cache", "is_search_engine", "is_pornography", "is_advertisement",
          "is_icat", "is_google_malware", "is_google_phishing", "is_se_keyword"}) {
      json += std::string(", \"") + flag + "\": " + (i % 3 ? "false" : "true");
    }
    json += ", \"row_version\": " + std::to_string(1000000 + i) + "}";
  }
  return json + "]";
}

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

template <typename Record>
__attribute__((noinline)) void Naive(sqlite3* db, const std::string& json) {
  rapidjson::Document document;
  document.Parse(json.c_str());
  for (const auto& value : document.GetArray()) {
    Record record;
    if (!record.ParseJson(value) || record.Add2DB(db) != SQLITE_DONE) std::abort();
  }
}

template <typename Record>
__attribute__((noinline)) void Ours(sqlite3* db, const std::string& json) {
  std::string error;
  if (!wexpol::AddDocument(db, wexpol::kRecordClass<Record>, json.c_str(), error)) std::abort();
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

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
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
                  {"json_each", [&] { JsonEach<Record>(plain, json); }, begin(plain)},
                  {"limit", [&] { limit.Run(); }, begin(plain)}},
                 1, static_cast<int>(state.range(1)));
  restart();
  wexpol::DropStatementCache(cached);
  sqlite3_close(cached);
}

void SynchroniseAccounts(benchmark::State& state) {
  SynchroniseEmpty<CPlainAccount>(state, Accounts);
}
void SynchroniseCategories(benchmark::State& state) {
  SynchroniseEmpty<CCategory>(state, Categories);
}
void SynchroniseDevices(benchmark::State& state) { SynchroniseEmpty<CDevice>(state, Devices); }

// A full table replaced in one committed transaction, beside the naive way with the engine's own
// default of a 2 MB page cache.
void ReplaceDevices(benchmark::State& state) {
  bench::Database database;
  const std::string json = Devices(static_cast<int>(state.range(0)));
  Exec(database.handle(), "PRAGMA cache_size = -2000; PRAGMA synchronous = OFF");
  const auto ours = [&] {
    CPolicyDB& db = database.session();
    if (!db.Transaction(TRANSACTION_BEGIN) || !db.ClearAndAddDevices(json.c_str()) ||
        !db.Transaction(TRANSACTION_COMMIT)) {
      std::abort();
    }
  };
  const auto naive = [&] {
    Exec(database.handle(), "BEGIN; DELETE FROM devices");
    Naive<CDevice>(database.handle(), json);
    Exec(database.handle(), "COMMIT");
  };
  bench::Compare(state, {{"ours", ours, {}}, {"naive", naive, {}}}, 1,
                 static_cast<int>(state.range(1)));
}

// A list's select stepped through and each column read, nothing kept.
void StepAndRead(sqlite3* db, const wexpol::Table& table) {
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2(db, table.select().text(), -1, &select, nullptr);
  std::int64_t sum = 0;
  const int columns = sqlite3_column_count(select);
  while (sqlite3_step(select) == SQLITE_ROW) {
    for (int column = 0; column < columns; ++column) {
      if (sqlite3_column_type(select, column) == SQLITE_TEXT) {
        sum += *sqlite3_column_text(select, column);
      } else {
        sum += sqlite3_column_int(select, column);
      }
    }
  }
  benchmark::DoNotOptimize(sum);
  sqlite3_finalize(select);
}

template <typename Record>
void List(benchmark::State& state, std::string (*make)(int)) {
  bench::Database database;
  Exec(database.handle(), "BEGIN");
  Ours<Record>(database.handle(), make(static_cast<int>(state.range(0))));
  Exec(database.handle(), "COMMIT");
  std::list<Record*> list;
  std::string error;
  const auto clear = [&] {
    for (Record* record : list) delete record;
    list.clear();
  };
  const auto ours = [&] {
    if (!wexpol::ListRecords(database.handle(), list, nullptr, 0, error)) std::abort();
  };
  bench::Compare(state,
                 {{"step_and_read", [&] { StepAndRead(database.handle(), Record::Table()); }, {}},
                  {"ours", ours, clear}},
                 1, static_cast<int>(state.range(1)));
  clear();
}

void ListAccounts(benchmark::State& state) { List<CPlainAccount>(state, Accounts); }
void ListDevices(benchmark::State& state) { List<CDevice>(state, Devices); }

// Opening, the key and the first read, beside an unencrypted file of the same tables.
void OpenSession(benchmark::State& state) {
  bench::Database database;
  const std::wstring plain_path = database.path() + L".plain";
  sqlite3* plain = nullptr;
  const std::string plain_utf8 = wexpol::WideToUtf8(plain_path);
  sqlite3_open(plain_utf8.c_str(), &plain);
  Exec(plain, "PRAGMA journal_mode = WAL");
  Exec(plain, wexpol::kSchema);
  sqlite3_close(plain);
  const auto unencrypted = [&] {
    sqlite3* db = nullptr;
    sqlite3_open_v2(plain_utf8.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    CAccount::GetAccountId(db);
    sqlite3_close(db);
  };
  const auto ours = [&] {
    CPolicyDB db("60718", database.path().c_str(), SQLITE_OPEN_READWRITE, 1000);
    CAccount account;
    db.GetRecord(account);
  };
  bench::Compare(state, {{"unencrypted", unencrypted, {}}, {"ours", ours, {}}}, 50,
                 static_cast<int>(state.range(1)));
}

BENCHMARK(SynchroniseAccounts)->Args({100000, 31})->Iterations(1);
BENCHMARK(SynchroniseCategories)->Args({100000, 31})->Iterations(1);
BENCHMARK(SynchroniseDevices)->Args({100000, 31})->Iterations(1);
// One round of few records, for counting instructions; see scripts/figures.
BENCHMARK(SynchroniseAccounts)->Args({2000, 1})->Iterations(1);
BENCHMARK(SynchroniseCategories)->Args({2000, 1})->Iterations(1);
BENCHMARK(SynchroniseDevices)->Args({2000, 1})->Iterations(1);
BENCHMARK(ReplaceDevices)->Args({100000, 11})->Iterations(1);
BENCHMARK(ListAccounts)->Args({20000, 31})->Iterations(1);
BENCHMARK(ListDevices)->Args({20000, 31})->Iterations(1);
BENCHMARK(OpenSession)->Args({1, 31})->Iterations(1);

}  // namespace
