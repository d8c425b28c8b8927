// A configuration value and a password check, beside the same statement written by hand: prepared
// once, its text taken into a plain text, and for a hashed password the same digest.

#include <cstring>
#include <string>

#include "bench/bench_support.h"
#include "wexpol/platform/hash.h"

namespace {

constexpr int kRows = 67;
constexpr int kRepeats = 2000;
constexpr char kKey[] = "policy_api_url";
constexpr short kService = 3;
constexpr int kPolicy = 7;
constexpr char kPassword[] = "correct horse";
constexpr wchar_t kEntered[] = L"correct horse";
constexpr char kHashed[] = "3cb4e732631f47e6eb961f34554b7cde";

void Fill(bench::Database& database) {
  for (int id = 1; id <= kRows; ++id) {
    const std::string key = id == 40 ? kKey : "key_" + std::to_string(id);
    database.Sql("INSERT INTO service_configurations VALUES(" + std::to_string(id) + "," +
                 std::to_string(kService) + ",'" + key + "','https://console.example/v2',1,1)");
  }
  for (int id = 1; id <= 8; ++id) {
    database.Sql("INSERT INTO policies(id,override_password,uninstall_password) VALUES(" +
                 std::to_string(id) + ",'" + kPassword + "','" + kHashed + "')");
  }
}

class ByHand {
 public:
  ByHand(sqlite3* db, const char* text) {
    sqlite3_prepare_v3(db, text, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
  }
  ~ByHand() { sqlite3_finalize(statement_); }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  sqlite3_stmt* get() { return statement_; }
  // The text of the first row.
  const std::string& Text() {
    if (sqlite3_step(statement_) == SQLITE_ROW) {
      text_ = reinterpret_cast<const char*>(sqlite3_column_text(statement_, 0));
    }
    sqlite3_reset(statement_);
    return text_;
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
  std::string text_;
};

void ServiceConfiguration(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  ByHand select(database.handle(),
                "SELECT value FROM service_configurations WHERE key=? AND service_id=?");
  std::string value;
  bench::Compare(
      state,
      {{"by_hand",
        [&] {
          sqlite3_bind_text(select.get(), 1, kKey, -1, SQLITE_STATIC);
          sqlite3_bind_int(select.get(), 2, kService);
          benchmark::DoNotOptimize(select.Text().data());
        },
        {}},
       {"ours", [&] { database.session().GetServiceConfiguration(value, kKey, kService); }, {}}},
      kRepeats);
}
BENCHMARK(ServiceConfiguration)->Iterations(1)->Unit(benchmark::kMillisecond);

// The same inside a transaction of the caller, a few times; counted by callgrind.
class HeldValue : public ByHand {
 public:
  using ByHand::ByHand;
  __attribute__((noinline)) void Run() {
    sqlite3_bind_text(get(), 1, kKey, -1, SQLITE_STATIC);
    sqlite3_bind_int(get(), 2, kService);
    benchmark::DoNotOptimize(Text().data());
  }
};
__attribute__((noinline)) void AskValue(CPolicyDB& db, std::string& value) {
  db.GetServiceConfiguration(value, kKey, kService);
}

void ValueInTransaction(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  HeldValue held(database.handle(),
                 "SELECT value FROM service_configurations WHERE key=? AND service_id=?");
  std::string value;
  database.Sql("BEGIN");
  database.session().Transaction(TRANSACTION_BEGIN);
  bench::Compare(state,
                 {{"by_hand", [&] { held.Run(); }, {}},
                  {"ours", [&] { AskValue(database.session(), value); }, {}}},
                 static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}
BENCHMARK(ValueInTransaction)->Args({2000, 31})->Args({2000, 1})->Iterations(1);

void ClearPassword(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  ByHand select(database.handle(), "SELECT override_password FROM policies WHERE id=?");
  bench::Compare(
      state,
      {{"by_hand",
        [&] {
          sqlite3_bind_int(select.get(), 1, kPolicy);
          benchmark::DoNotOptimize(select.Text() == kPassword);
        },
        {}},
       {"ours", [&] { database.session().IsValidPassword(kEntered, 0, kPolicy, 0); }, {}}},
      kRepeats);
}
BENCHMARK(ClearPassword)->Iterations(1)->Unit(benchmark::kMillisecond);

void HashedPassword(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  ByHand select(database.handle(), "SELECT uninstall_password FROM policies WHERE id=?");
  bench::Compare(
      state,
      {{"by_hand",
        [&] {
          sqlite3_bind_int(select.get(), 1, kPolicy);
          wexpol::Md5Digest digest;
          wexpol::CryptdllMd5(kPassword, std::strlen(kPassword), &digest);
          benchmark::DoNotOptimize(select.Text().size() == 2 * digest.size());
        },
        {}},
       {"ours", [&] { database.session().IsValidPassword(kEntered, 0, kPolicy, 1); }, {}}},
      kRepeats);
}
BENCHMARK(HashedPassword)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
