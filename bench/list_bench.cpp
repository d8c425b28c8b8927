// Rows into lists, and opening, beside
//  - step and read: the list's select stepped through, each column read, nothing kept;
//  - own: the same loop, keeping what a list keeps;
//  - unencrypted: the same engine, the same tables, a file without a key.

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/documents.h"
#include "tools/provision/schema.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"

namespace {

using bench::Exec;

// A list's select stepped through and each column read, nothing kept.
__attribute__((noinline)) void StepAndRead(sqlite3* db, const wexpol::Table& table) {
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

// A row that owns what a record of ours owns: its numbers, and its texts widened.
struct Owned {
  std::vector<std::int64_t> numbers;
  std::vector<std::unique_ptr<wchar_t[]>> texts;
};

// The same loop, written by hand to keep the rows.
void StepAndOwn(sqlite3* db, const wexpol::Table& table, std::list<std::unique_ptr<Owned>>& list) {
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2(db, table.select().text(), -1, &select, nullptr);
  const int columns = sqlite3_column_count(select);
  while (sqlite3_step(select) == SQLITE_ROW) {
    auto row = std::make_unique<Owned>();
    for (int column = 0; column < columns; ++column) {
      if (sqlite3_column_type(select, column) == SQLITE_TEXT) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(select, column));
        const std::wstring wide = wexpol::Utf8ToWide(text);
        row->texts.push_back(std::make_unique<wchar_t[]>(wide.size() + 1));
        wide.copy(row->texts.back().get(), wide.size());
      } else {
        row->numbers.push_back(sqlite3_column_int(select, column));
      }
    }
    list.push_back(std::move(row));
  }
  sqlite3_finalize(select);
}

template <typename Record>
__attribute__((noinline)) bool Listed(sqlite3* db, std::list<Record*>& list, std::string& error) {
  return wexpol::ListRecords(db, list, nullptr, 0, error);
}

template <typename Record>
void List(benchmark::State& state, std::string (*make)(int)) {
  bench::Database database;
  Exec(database.handle(), "BEGIN");
  bench::Ours<Record>(database.handle(), make(static_cast<int>(state.range(0))));
  Exec(database.handle(), "COMMIT");
  std::list<Record*> list;
  std::string error;
  const auto clear = [&] {
    for (Record* record : list) delete record;
    list.clear();
  };
  const auto ours = [&] {
    if (!Listed(database.handle(), list, error)) std::abort();
  };
  std::list<std::unique_ptr<Owned>> owned;
  const auto own = [&] { StepAndOwn(database.handle(), Record::Table(), owned); };
  const auto drop = [&] { owned.clear(); };
  bench::Compare(state,
                 {{"step_and_read", [&] { StepAndRead(database.handle(), Record::Table()); }, {}},
                  {"own", own, drop},
                  {"ours", ours, clear}},
                 1, static_cast<int>(state.range(1)));
  clear();
}

void ListAccounts(benchmark::State& state) { List<bench::CPlainAccount>(state, bench::Accounts); }
void ListDevices(benchmark::State& state) { List<CDevice>(state, bench::Devices); }

// Opening, the key and the first read of a record, beside the same of an unencrypted file with the
// same tables.
void OpenSession(benchmark::State& state) {
  bench::Database database;
  const std::string plain_path = wexpol::WideToUtf8(database.path()) + ".plain";
  sqlite3* plain = nullptr;
  sqlite3_open(plain_path.c_str(), &plain);
  Exec(plain, "PRAGMA journal_mode = WAL");
  Exec(plain, wexpol::kSchema);
  sqlite3_close(plain);
  const auto unencrypted = [&] {
    sqlite3* db = nullptr;
    sqlite3_open_v2(plain_path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    int keep = 1;  // The write-ahead log, as a session does.
    sqlite3_file_control(db, "main", SQLITE_FCNTL_PERSIST_WAL, &keep);
    sqlite3_busy_timeout(db, 1000);
    CAccount account;
    std::string error;
    if (wexpol::ReadRecord(account, error, db, CAccount::Table().select())) std::abort();
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

BENCHMARK(ListAccounts)->Args({20000, 31})->Iterations(1);
BENCHMARK(ListDevices)->Args({20000, 31})->Iterations(1);
// One round, for counting instructions; see scripts/figures.
BENCHMARK(ListAccounts)->Args({2000, 1})->Iterations(1);
BENCHMARK(ListDevices)->Args({2000, 1})->Iterations(1);
BENCHMARK(OpenSession)->Args({1, 31})->Iterations(1);

}  // namespace
