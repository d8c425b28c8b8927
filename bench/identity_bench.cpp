// Which device this is and which credentials a request carries, beside the same statements written
// by hand: prepared once, in one read, each column taken into a plain text or number.
//  - by hand: those statements, and where a step is part of the question, the device id asked of
//    the machine's store and the line of the diagnostic log;
//  - statements: nothing but the statements.

#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/documents.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/diagnostic_log.h"

namespace {

constexpr int kDevices = 40;
constexpr int kLocal = 27;

void Fill(bench::Database& database) {
  CPolicyDB& db = database.session();
  db.ClearAndAddAccounts(R"({"id":7001,"locale_id":1033,"account_status_id":1,"time_zone_id":42})");
  db.ClearAndAddDevices(bench::Devices(kDevices).c_str());
  std::string nics = "[";
  for (int id = 1; id <= 2 * kDevices; ++id) {
    nics += R"({"id":)" + std::to_string(id) + R"(,"device_id":)" + std::to_string((id + 1) / 2) +
            R"(,"mac":"02005e0053af","ipv4":"192.0.2.10"},)";
  }
  nics.back() = ']';
  db.AddNics(nics.c_str());
  database.Sql("UPDATE devices SET token='0123456789abcdef0123456789abcdef' WHERE id=" +
               std::to_string(kLocal));
  for (int id = 1; id <= 67; ++id) {
    database.Sql("INSERT INTO service_configurations VALUES(" + std::to_string(id) + ",1,'" +
                 (id == 40 ? "policy_api_url" : "key_" + std::to_string(id)) +
                 "','https://console.example/api/v2',1,1)");
  }
  CDeviceInfo::WriteDeviceID(static_cast<long>(kLocal));
}

// Statements that stay prepared, and what their rows hold.
class ByHand {
 public:
  ByHand(sqlite3* db, const std::vector<const char*>& texts) {
    for (const char* text : texts)
      sqlite3_prepare_v3(db, text, -1, SQLITE_PREPARE_PERSISTENT, &statements_.emplace_back(),
                         nullptr);
  }
  ~ByHand() {
    for (sqlite3_stmt* statement : statements_) sqlite3_finalize(statement);
  }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  // Reads all rows, or the first one.
  void Run(std::size_t which, int id = 0, bool all = false) {
    sqlite3_stmt* statement = statements_[which];
    if (id) sqlite3_bind_int(statement, 1, id);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      const int columns = sqlite3_column_count(statement);
      texts_.resize(static_cast<std::size_t>(columns));
      for (int column = 0; column < columns; ++column) {
        switch (sqlite3_column_type(statement, column)) {
          case SQLITE_INTEGER:
            benchmark::DoNotOptimize(sqlite3_column_int(statement, column));
            break;
          case SQLITE_NULL:
            break;
          default:
            texts_[static_cast<std::size_t>(column)].assign(
                static_cast<const char*>(sqlite3_column_blob(statement, column)),
                static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
        }
      }
      if (!all) break;
    }
    sqlite3_reset(statement);
  }

 private:
  std::vector<sqlite3_stmt*> statements_;
  std::vector<std::string> texts_;
};

int StoredId() {
  long id = -1;
  CDeviceInfo::GetDeviceID(&id);
  return static_cast<int>(id);
}

void ThisDevice(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  {
    ByHand hand(database.handle(), {"BEGIN", "SELECT * FROM devices WHERE id=?",
                                    "SELECT * FROM nics WHERE device_id=?", "COMMIT"});
    const auto read = [&](int id) {
      hand.Run(0);
      hand.Run(1, id);
      hand.Run(2, id, true);
      hand.Run(3);
    };
    bench::Compare(state,
                   {{"by_hand", [&] { read(StoredId()); }, {}},
                    {"ours",
                     [&] {
                       CDevice device;
                       database.session().GetThisDevice(device);
                       benchmark::DoNotOptimize(device.id);
                     },
                     {}},
                    {"statements", [&] { read(kLocal); }, {}}},
                   1000);
  }
}
BENCHMARK(ThisDevice)->Iterations(1)->Unit(benchmark::kMillisecond);

void AuthInfo(benchmark::State& state) {
  bench::Database database;
  Fill(database);
  {
    ByHand hand(database.handle(),
                {"BEGIN", "SELECT id,locale_id,account_status_id,time_zone_id FROM accounts",
                 "SELECT value FROM service_configurations WHERE key='policy_api_url'",
                 "SELECT token FROM devices WHERE id=?", "COMMIT"});
    const auto read = [&](int id) {
      for (const std::size_t which : {0u, 1u, 2u}) hand.Run(which);
      hand.Run(3, id);
      hand.Run(4);
    };
    bench::Compare(state,
                   {{"by_hand",
                     [&] {
                       const int id = StoredId();
                       read(id);
                       wexpol::LogMessage("CDevice::GetToken DeviceId = %d", id);
                     },
                     {}},
                    {"ours",
                     [&] {
                       CAuthInfo info;
                       database.session().GetAuthInfo(info, false, 0, false);
                       benchmark::DoNotOptimize(info.device_id);
                     },
                     {}},
                    {"statements", [&] { read(kLocal); }, {}}},
                   200);
  }
}
BENCHMARK(AuthInfo)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
