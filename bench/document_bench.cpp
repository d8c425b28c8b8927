// What a document costs besides its time: memory, commits, and what happens when it is refused.

#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

#include "bench/bench_support.h"
#include "bench/documents.h"
#include "wexpol/policydb/connection.h"

namespace {

using bench::Exec;

// Kilobytes of a line of the process's status: VmRSS is what it holds, VmHWM the most it held.
long Status(const char* name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == name) {
      long kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  std::abort();
}

void ForgetPeak() { std::ofstream("/proc/self/clear_refs") << '5'; }

double PageCacheKilobytes(sqlite3* db) {
  int current = 0;
  int highest = 0;
  sqlite3_db_status(db, SQLITE_DBSTATUS_CACHE_USED, &current, &highest, 0);
  return current / 1024.0;
}

// Memory of `run` over that of the page cache, in documents.
void Memory(benchmark::State& state, CPolicyDB& db, const std::string& json,
            const std::function<void()>& run) {
  sqlite3* handle = wexpol::HandleOf(db);
  for ([[maybe_unused]] auto _ : state) {
    malloc_trim(0);  // What the document was made with is not to be found room in.
    ForgetPeak();
    const double before = static_cast<double>(Status("VmRSS:")) - PageCacheKilobytes(handle);
    run();
    const double cache = PageCacheKilobytes(handle);
    const auto documents = [&](const char* name) {
      const double size = static_cast<double>(json.size()) / 1024.0;
      return (static_cast<double>(Status(name)) - before - cache) / size;
    };
    state.counters["page_cache_MB"] = cache / 1024.0;
    state.counters["extra/document"] = documents("VmHWM:");
    state.counters["kept/document"] = documents("VmRSS:");
    malloc_trim(0);  // What the library has freed and the allocator holds.
    state.counters["kept_trimmed/document"] = documents("VmRSS:");
  }
}

// A document of 50 MB into an empty table.
void MemoryStored(benchmark::State& state) {
  bench::Database database;
  CPolicyDB& db = database.session();
  const std::string json = bench::Devices(static_cast<int>(state.range(0)));
  db.ClearAndAddDevices(bench::Devices(1000).c_str());
  db.ClearAndAddDevices("[]");
  Memory(state, db, json, [&] {
    if (!db.ClearAndAddDevices(json.c_str())) std::abort();
  });
}

// The same over the rows that it stored before, in a transaction of the caller.
void MemoryReplaced(benchmark::State& state) {
  bench::Database database;
  CPolicyDB& db = database.session();
  const std::string json = bench::Devices(static_cast<int>(state.range(0)));
  if (!db.ClearAndAddDevices(json.c_str())) std::abort();
  Memory(state, db, json, [&] {
    if (!db.Transaction(TRANSACTION_BEGIN) || !db.ClearAndAddDevices(json.c_str()) ||
        !db.Transaction(TRANSACTION_COMMIT)) {
      std::abort();
    }
  });
}

// A full table replaced in one committed transaction, beside the naive way with the engine's own
// default of a 2 MB page cache.
void ReplaceDevices(benchmark::State& state) {
  bench::Database database;
  const std::string json = bench::Devices(static_cast<int>(state.range(0)));
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
    bench::Naive<CDevice>(database.handle(), json);
    Exec(database.handle(), "COMMIT");
  };
  bench::Compare(state, {{"ours", ours, {}}, {"naive", naive, {}}}, 1,
                 static_cast<int>(state.range(1)));
}

// 5,000 records in a transaction of the caller and in none. By the wall clock: what is waited for
// is the disk.
void OutsideTransaction(benchmark::State& state) {
  bench::Database database;
  CPolicyDB& db = database.session();
  const std::string json = bench::Accounts(5000);
  const auto replace = [&] {
    if (!db.ClearAndAddAccounts(json.c_str())) std::abort();
  };
  const auto inside = [&] {
    if (!db.Transaction(TRANSACTION_BEGIN)) std::abort();
    replace();
    if (!db.Transaction(TRANSACTION_COMMIT)) std::abort();
  };
  bench::Compare(state, {{"inside", inside, {}}, {"outside", replace, {}}}, 1, 31,
                 bench::Clock::kWall);
}

__attribute__((noinline)) bool Replace(CPolicyDB& db, const std::string& json) {
  return db.ClearAndAddDevices(json.c_str());
}

// A document, stored or refused, in a transaction that is then taken back; counted by callgrind.
void ReplaceAndTakeBack(benchmark::State& state, const std::string& json, bool stored) {
  bench::Database database;
  CPolicyDB& db = database.session();
  for ([[maybe_unused]] auto _ : state) {
    db.Transaction(TRANSACTION_BEGIN);
    if (Replace(db, json) != stored) std::abort();
    db.Transaction(TRANSACTION_ROLLBACK);
  }
}

void StoredDocument(benchmark::State& state) {
  ReplaceAndTakeBack(state, bench::Devices(2000), true);
}
void OneRecord(benchmark::State& state) { ReplaceAndTakeBack(state, bench::Devices(1), true); }

// The last of many records has the key of the first.
void LastRecordRefused(benchmark::State& state) {
  std::string json = bench::Devices(2000);
  const auto last = json.rfind("\"id\": 2000");
  ReplaceAndTakeBack(state, json.replace(last, 10, "\"id\": 1"), false);
}
void FirstRecordRefused(benchmark::State& state) {
  std::string json = bench::Devices(2000);
  ReplaceAndTakeBack(state, json.replace(json.find("\"id\": 1"), 7, "\"id\": \"\""), false);
}
void FaultAtTheEnd(benchmark::State& state) {
  std::string json = bench::Devices(2000);
  json.back() = '}';
  ReplaceAndTakeBack(state, json, false);
}

BENCHMARK(MemoryStored)->Arg(62000)->Iterations(1);
BENCHMARK(MemoryReplaced)->Arg(62000)->Iterations(1);
BENCHMARK(ReplaceDevices)->Args({100000, 11})->Iterations(1);
BENCHMARK(OutsideTransaction)->Iterations(1);
BENCHMARK(StoredDocument)->Iterations(1);
BENCHMARK(OneRecord)->Iterations(1);
BENCHMARK(LastRecordRefused)->Iterations(1);
BENCHMARK(FirstRecordRefused)->Iterations(1);
BENCHMARK(FaultAtTheEnd)->Iterations(1);

}  // namespace
