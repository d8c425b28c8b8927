// Alerts beside the same statements by hand: each prepared once, in one transaction for an
// occurrence and one read for the timers.

#include <ctime>
#include <map>
#include <string>

#include "bench/bench_support.h"

namespace {

// A statement that is kept; its values are bound anew for each run.
class Kept {
 public:
  Kept(sqlite3* db, const char* sql) { sqlite3_prepare_v2(db, sql, -1, &statement_, nullptr); }
  ~Kept() { sqlite3_finalize(statement_); }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

  template <typename... Values>
  int Step(Values... values) {
    int index = 0;
    (Bind(++index, values), ...);
    return sqlite3_step(statement_);
  }
  bool Next() { return sqlite3_step(statement_) == SQLITE_ROW; }
  void Reset() { sqlite3_reset(statement_); }
  template <typename... Values>
  void Run(Values... values) {
    Step(values...);
    Reset();
  }
  std::int64_t Int(int column) const { return sqlite3_column_int64(statement_, column); }
  std::string Text(int column) const {
    return reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  }

 private:
  void Bind(int index, std::int64_t value) { sqlite3_bind_int64(statement_, index, value); }
  void Bind(int index, const char* text) {
    sqlite3_bind_text(statement_, index, text, -1, SQLITE_STATIC);
  }
  sqlite3_stmt* statement_ = nullptr;
};

class AlertsByHand {
 public:
  explicit AlertsByHand(sqlite3* db) : db_(db) {}

  long Record(const CAlertEventType& type) {
    const std::int64_t now = std::time(nullptr);
    check_.Step(type.id);
    const bool sent = check_.Int(2) != 0;
    check_.Reset();
    begin_.Run();
    purge_.Run(now - type.time_window * 60, type.id);
    insert_.Run(type.id, now, type.details.get());
    count_.Step(type.id);
    const bool enough = count_.Int(0) >= type.threshold;
    count_.Reset();
    if (enough) MakeLog(type);
    commit_.Run();
    return enough && !sent;
  }

  std::map<long, long> Timers() {
    const std::int64_t now = std::time(nullptr);
    std::map<long, long> timers;
    read_.Run();
    for (int code = types_.Step(1); code == SQLITE_ROW; code = types_.Step()) {
      const std::int64_t id = types_.Int(0);
      check_.Step(id);
      timers[static_cast<long>(id)] = static_cast<long>(types_.Int(5) * 60 - now + check_.Int(1));
      check_.Reset();
    }
    types_.Reset();
    commit_.Run();
    return timers;
  }

 private:
  void MakeLog(const CAlertEventType& type) {
    condense_.Step(type.id);
    const std::string details = condense_.Text(0);
    const std::int64_t last = condense_.Int(1);
    const std::int64_t first = condense_.Int(2);
    condense_.Reset();
    delete_logs_.Run(type.id);
    insert_log_.Run(type.id, type.alert_id, details.c_str(), type.event_type_id, type.name.get(),
                    first, last);
    delete_buffer_.Run(type.id);
    check_.Run(type.id);
  }

  sqlite3* db_;
  Kept begin_{db_, "BEGIN IMMEDIATE"};
  Kept read_{db_, "BEGIN"};
  Kept commit_{db_, "COMMIT"};
  Kept check_{db_, "SELECT * FROM alert_checks WHERE alert_event_type_id=?"};
  Kept purge_{db_, "DELETE FROM alert_logs_buffer WHERE event_time<? AND alert_event_type_id=?"};
  Kept insert_{db_,
               "INSERT INTO alert_logs_buffer(alert_event_type_id,event_time,details) "
               "VALUES(?,?,?)"};
  Kept count_{db_, "SELECT COUNT(*) FROM alert_logs_buffer WHERE alert_event_type_id=?"};
  Kept condense_{db_,
                 "SELECT details, max(event_time), min(event_time) FROM alert_logs_buffer "
                 "WHERE alert_event_type_id=?"};
  Kept delete_logs_{db_, "DELETE FROM alert_logs WHERE alert_event_type_id=?"};
  Kept insert_log_{db_,
                   "INSERT INTO alert_logs(alert_event_type_id,alert_id,details,event_type_id,"
                   "alert_name,event_start,event_end) VALUES(?,?,?,?,?,?,?)"};
  Kept delete_buffer_{db_, "DELETE FROM alert_logs_buffer WHERE alert_event_type_id=?"};
  Kept types_{db_,
              "SELECT id,alert_id,event_type_id,name,enabled,suppression_duration,threshold,"
              "threshold_unit_id,time_window,details,auto_acknowledge_enabled FROM "
              "alert_event_types WHERE enabled=?"};
};

constexpr int kTypes = 500;

void AddTypes(bench::Database& database, int threshold) {
  database.session().Transaction(TRANSACTION_BEGIN);  // Both sides without waits for the disk.
  database.session().Transaction(TRANSACTION_COMMIT);
  database.Sql("PRAGMA synchronous = OFF");
  std::string values;
  for (int id = 1; id <= kTypes; ++id) {
    values += (id == 1 ? "(" : ",(") + std::to_string(id) + "," + std::to_string(id * 3) + "," +
              std::to_string(id % 40) + ",'Service stopped unexpectedly',1,60," +
              std::to_string(threshold) + ",1,30,'The service has stopped and was not started.',0)";
  }
  database.Sql("INSERT INTO alert_event_types VALUES" + values);
  for (int id = 1; id <= kTypes; ++id) database.session().UpdateAlertCheck(id, false);
}

void RecordOccurrence(benchmark::State& state) {
  bench::Database database;
  AddTypes(database, static_cast<int>(state.range(0)));
  AlertsByHand by_hand(database.handle());
  CAlertEventType type;
  database.session().GetAlertEventType(&type, 250L);
  bench::Compare(
      state,
      {{"by_hand", [&] { benchmark::DoNotOptimize(by_hand.Record(type)); }, {}},
       {"ours",
        [&] { benchmark::DoNotOptimize(database.session().AddAlertLogBuffer(&type, nullptr)); },
        {}}},
      300);
}

void CheckTimers(benchmark::State& state) {
  bench::Database database;
  AddTypes(database, 1);
  AlertsByHand by_hand(database.handle());
  const auto ours = [&] {
    std::map<long, long> timers;
    database.session().GetAlertCheckTimerValues(timers, "enabled", 1, nullptr);
    benchmark::DoNotOptimize(timers);
  };
  bench::Compare(
      state,
      {{"by_hand", [&] { benchmark::DoNotOptimize(by_hand.Timers()); }, {}}, {"ours", ours, {}}},
      50);
}

BENCHMARK(RecordOccurrence)->Arg(1)->Arg(3)->Iterations(1);
BENCHMARK(CheckTimers)->Iterations(1);

}  // namespace
