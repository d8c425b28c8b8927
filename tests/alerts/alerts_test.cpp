// The tables behind the alerts, and when occurrences become an alert: whole histories under a
// stepped clock.

#include <random>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"

namespace {

using AlertTablesTest = PolicyTest;
using Texts = std::vector<std::string>;

TEST_F(AlertTablesTest, TypesFromTheConsole) {
  Sql("INSERT INTO alert_event_types(id,event_type_id,enabled,auto_acknowledge_enabled) "
      "VALUES(2,5,0,1),(1,5,1,0),(3,6,0,0)");
  CAlertEventType type;
  EXPECT_TRUE(db().GetAlertEventType(&type, short{5}));
  EXPECT_EQ(type.id, 1);
  EXPECT_EQ(Join(db().GetAlertEventType(&type, 1L), db().GetAlertEventType(&type, 2L),
                 db().GetAlertEventType(&type, short{6}), db().GetAlertEventType(nullptr, 1L)),
            "1 0 0 0");
  // By a type that is not enabled.
  EXPECT_EQ(Join(db().IsAutoAcknowledgeEnabled(5), db().IsAutoAcknowledgeEnabled(6)), "1 0");
}

TEST_F(AlertTablesTest, RulesAndLimits) {
  CAlertEventType type;
  for (type.event_type_id = 17; type.event_type_id < 24; ++type.event_type_id) {
    EXPECT_EQ(type.IsWindowsServiceEvent(), type.event_type_id >= 19 && type.event_type_id <= 21);
  }
  const std::int64_t giga = 1 << 30;
  const std::int64_t limits[][5] = {
      // Unit, threshold, value, total; whether it is reached.
      {2, 2, 2047, 0, 1},     {2, 2, 2048, 0, 0},   {3, 1, 1048575, 0, 1}, {3, 1, 1048576, 0, 0},
      {4, 8, 8 * giga, 0, 0}, {4, -1, -giga, 0, 0}, {4, 8, -1, 0, 1},      {5, 15, 30, 200, 1},
      {5, 14, 30, 200, 0},    {5, 99, 1, 0, 0},     {5, 28, 29, 100, 1},   {5, 15, 319, 2000, 1},
      {5, 99, -1, 0, 0},      {1, 9, 0, 100, 0},    {6, 9, 0, 100, 0},     {5, 9, INT64_MAX, 1, 0}};
  for (const auto& [unit, threshold, value, total, reached] : limits) {
    type.threshold_unit_id = static_cast<short>(unit);
    type.threshold = static_cast<int>(threshold);
    EXPECT_EQ(type.IsLimitReached(value, total), reached) << unit << ' ' << value;
  }
  const int rules[][3] = {{0, 5, 1}, {1, 0, 1}, {1, -1, 1}, {1, 1, 0}, {4, 5, 0}, {6, 5, 1}};
  for (const auto& [suppression, window, valid] : rules) {
    type.suppression_duration = suppression;
    type.time_window = window;
    EXPECT_EQ(type.IsValidRule(), valid) << suppression << ' ' << window;
  }
}

TEST_F(AlertTablesTest, LogsAreReportedInLocalTimeAndLeaveOnlyWhenDeleted) {
  clock().SetLocalOffset(-5 * 3600);
  CAlertEventType type;
  type.id = 1;
  type.details = "\"d\"";
  CAlertLog log(&type, nullptr, -1, -1);
  std::string out;
  log.GenerateJson(out, 610);
  EXPECT_EQ(out, R"({"device_id": 610,"details": "\"d\"","event_type_id": 0,)"
                 R"("event_start": "2024-03-13T07:00:00","event_end": "2024-03-13T07:00:00"})");
  EXPECT_TRUE(db().AddAlertLog(&log));
  log = CAlertLog(&type, "", INT64_MAX, -2);
  log.id = 4;
  log.event_end = -1;
  log.GenerateJson(out = "", 1);
  EXPECT_EQ(out, R"({"device_id": 1,"details": "","event_type_id": 0})");
  log = CAlertLog(&type, "x", 5, -1);
  EXPECT_TRUE(db().AddAlertLog(&log));
  log.alert_event_type_id = 2;
  EXPECT_TRUE(db().AddAlertLog(&log));
  EXPECT_EQ(Row("SELECT * FROM alert_logs WHERE id=2"), "2|1|NULL|x|0|NULL|5|5");
  EXPECT_EQ(Row("SELECT * FROM alert_checks"), "1|1710331200|0");
  std::int64_t start = -7, end = -7;
  EXPECT_TRUE(CAlertLog::GetStartAndEndTimes(handle(), start, end, 9));
  EXPECT_EQ(Join(start, end), "-7 -7");
  EXPECT_TRUE(CAlertLog::GetStartAndEndTimes(handle(), start, end, 1));
  EXPECT_EQ(Join(start, end), "5 1710331200");
  RecordList<CAlertLog> logs;
  EXPECT_TRUE(db().GetAlertLogs(logs.list, 1));
  EXPECT_EQ(Join(db().DeleteAlertLog(logs.list.front()), db().DeleteAlertLog(nullptr)), "1 0");
  EXPECT_EQ(Rows("SELECT id FROM alert_logs"), (Texts{"2", "3"}));
  EXPECT_TRUE(db().DeleteAlertLogs(1));
  EXPECT_EQ(Rows("SELECT id FROM alert_logs"), Texts{"3"});
  EXPECT_TRUE(db().DeleteAlertLogs(0));
  EXPECT_EQ(Row("SELECT id FROM alert_logs"), "");
}

TEST_F(AlertTablesTest, SentAlertsAreKeptByKindOfEvent) {
  for (const short kind : {short{5}, short{6}, short{-1}}) EXPECT_EQ(db().AddAlertSent(kind), 101);
  // -1 is stored as NULL and found by nothing; 7 is another kind.
  EXPECT_EQ(Join(db().DidWeSendThisTypeOfAlert(5), db().DidWeSendThisTypeOfAlert(-1)), "1 0");
  EXPECT_EQ(Join(db().DidWeSendThisTypeOfAlertBeforeThisTime(5, 1710331200),
                 db().DidWeSendThisTypeOfAlertBeforeThisTime(5, 1710331201),
                 db().DidWeSendThisTypeOfAlertBeforeThisTime(7, 1710331201)),
            "0 1 0");
  EXPECT_EQ(db().RemoveAlertSent(5), SQLITE_DONE);
  EXPECT_EQ(Rows("SELECT * FROM alerts_sent"), (Texts{"2|6|1710331200", "3|NULL|1710331200"}));
  EXPECT_EQ(db().RemoveAlertSent(0), SQLITE_DONE);
  EXPECT_EQ(Rows("SELECT id FROM alerts_sent"), Texts());

  Sql("INSERT INTO alert_logs_buffer(alert_event_type_id) VALUES(1),(2),(3)");
  for (const auto& [type, left] : {std::pair(1, "2,3"), {3, "2"}, {4, "2"}, {0, "NULL"}}) {
    EXPECT_EQ(CAlertLogBuffer::DeleteByType(handle(), type), SQLITE_DONE);
    EXPECT_EQ(Row("SELECT group_concat(alert_event_type_id) FROM alert_logs_buffer"), left);
  }
}

enum Table { kBuffer, kLogs, kChecks };
using Entry = std::array<std::int64_t, 4>;  // Table, type, time or start, end or sent.

// The rules over the rows in memory.
struct Model {
  std::multiset<Entry> rows;
  std::int64_t now = 0;

  void Erase(Table table, long type, std::int64_t before = INT64_MAX) {
    std::erase_if(rows, [&](const Entry& row) {
      return row[0] == table && row[1] == type && row[2] < before;
    });
  }
  void StartCheck(long type, bool sent) {
    Erase(kChecks, type);
    rows.insert({kChecks, type, now, sent});
  }
  const Entry* Check(long type) const {
    const auto check = rows.lower_bound({kChecks, type, INT64_MIN, 0});
    return check != rows.end() && (*check)[1] == type ? &*check : nullptr;
  }
  long Remaining(long type, std::int64_t period) {
    if (!Check(type)) StartCheck(type, false);
    const std::int64_t elapsed = now - (*Check(type))[2];
    return static_cast<long>(elapsed < 0 || elapsed >= period ? 0 : period - elapsed);
  }
  long Record(const CAlertEventType& type) {
    const Entry* check = Check(type.id);
    const bool sent = check && (*check)[3];
    const int suppression = type.suppression_duration * 60;
    if (suppression > 0 && sent && now - (*check)[2] < suppression) return 0;
    Erase(kBuffer, type.id, now - type.time_window * 60);
    rows.insert({kBuffer, type.id, now, 0});
    const auto first = rows.lower_bound({kBuffer, type.id, INT64_MIN, 0});
    const auto end = rows.upper_bound({kBuffer, type.id, INT64_MAX, 0});
    const int required = type.threshold_unit_id == 1 ? type.threshold : 1;
    if (std::distance(first, end) < required) return 0;
    const Entry log = {kLogs, type.id, (*first)[2], (*std::prev(end))[2]};
    for (const Table table : {kBuffer, kLogs}) Erase(table, type.id);
    rows.insert(log);
    return suppression == 0 || !sent || required == 1;
  }
};

class AlertTimingTest : public PolicyTest {
 protected:
  // Columns: id, kind, enabled, suppression, threshold, unit, window.
  void AddTypes(const std::string& rows) {
    Sql("INSERT INTO alert_event_types(id,event_type_id,enabled,suppression_duration,threshold,"
        "threshold_unit_id,time_window) VALUES" +
        rows + "; UPDATE alert_event_types SET name='n',details='d'");
    EXPECT_TRUE(db().GetAlertEventTypes(types_.list, nullptr, 0));
  }
  const CAlertEventType& Type(long id) { return **std::next(types_.list.begin(), id - 1); }
  long Record(long id) { return db().AddAlertLogBuffer(&Type(id), nullptr); }
  std::multiset<Entry> State() {
    std::multiset<Entry> entries;
    for (const std::string& row :
         Rows("SELECT 0,alert_event_type_id,event_time,0 FROM alert_logs_buffer UNION ALL "
              "SELECT 1,alert_event_type_id,event_start,event_end FROM alert_logs UNION ALL "
              "SELECT 2,* FROM alert_checks")) {
      std::istringstream fields(row);
      Entry entry;
      for (std::int64_t& field : entry) (fields >> field).ignore();
      entries.insert(entry);
    }
    return entries;
  }
  RecordList<CAlertEventType> types_;
};

TEST_F(AlertTimingTest, HistoriesFollowTheRules) {
  AddTypes(
      "(1,5,1,0,3,1,10),(2,5,1,5,2,1,4),(3,5,0,5,1,1,5),(4,20,1,0,4,2,10),(5,21,1,-2,2,1,9),"
      "(6,19,1,3,0,1,0),(7,5,1,7,4,1,30),(8,6,1,0,-1,1,3)");
  db().Transaction(TRANSACTION_BEGIN);
  db().Transaction(TRANSACTION_COMMIT);  // Leaves the session without waits for the disk.
  std::set<short> excluded = {19};
  Model model;
  std::mt19937 random(7);
  const auto pick = [&](unsigned count) { return static_cast<int>(random() % count); };
  for (int step = 0; step < 2000; ++step) {
    clock().Advance(pick(40) == 0 ? -900 : pick(3) * pick(150));
    model.now = wexpol::NowUtc();
    const long id = 1 + pick(8);
    const int action = pick(10);
    if (action == 0) {
      EXPECT_TRUE(db().UpdateAlertCheck(id, true));
      model.StartCheck(id, true);
    } else if (action == 1) {
      RecordList<CAlertLog> logs;
      EXPECT_TRUE(db().GetAlertLogs(logs.list, id));
      if (logs.list.empty()) model.StartCheck(id, false);
      EXPECT_TRUE(db().DeleteAlertLogs(id));
      model.Erase(kLogs, id);
    } else if (action == 2) {
      std::map<long, long> timers;
      EXPECT_TRUE(db().GetAlertCheckTimerValues(timers, nullptr, 0, &excluded));
      for (const auto& [type, minutes] : {std::pair(2L, 5), {4L, 10}, {5L, 9}, {7L, 7}}) {
        EXPECT_EQ(timers[type], model.Remaining(type, minutes * 60));
      }
      EXPECT_EQ(timers.size(), 4u);
    } else if (action == 3) {
      std::vector<long> to_send, expected;
      EXPECT_TRUE(db().AddAlertLogBuffer(to_send, 5, nullptr));
      for (const long type : {1, 2, 7}) {
        if (model.Record(Type(type)) == 1) expected.push_back(type);
      }
      EXPECT_EQ(to_send, expected);
    } else {
      EXPECT_EQ(Record(id), model.Record(Type(id)));
    }
    ASSERT_EQ(State(), model.rows) << "step " << step;
  }
}

TEST_F(AlertTimingTest, ClockSetBackMakesChecksDueButGoesOnSuppressing) {
  AddTypes("(1,5,1,5,1,1,10)");
  EXPECT_EQ(db().GetAlertCheckTime(1), -1);
  EXPECT_EQ(db().GetAlertSecondsRemaining(1, 300), 300);
  EXPECT_EQ(db().GetAlertCheckTime(1), wexpol::NowUtc());
  EXPECT_TRUE(db().UpdateAlertCheck(1, true));
  EXPECT_TRUE(CAlertCheck::StartTimer(handle(), 1));  // One that is there stays.
  clock().Advance(-3600);
  EXPECT_EQ(db().GetAlertSecondsRemaining(1, 300), 0);
  EXPECT_EQ(Record(1), 0);
}

TEST_F(AlertTimingTest, AMinuteIsEnoughToSuppress) {
  AddTypes("(1,5,1,1,1,1,10)");
  EXPECT_TRUE(db().UpdateAlertCheck(1, true));
  clock().Advance(59);
  EXPECT_EQ(Record(1), 0);
  clock().Advance(1);
  EXPECT_EQ(Record(1), 1);
}

TEST_F(AlertTimingTest, DurationsWrapAt32BitsAndCountsStopAt32767) {
  // In seconds 2^31 + 52 and 2^32 + 44.
  AddTypes("(1,5,1,35791395,1,1,10),(2,5,1,71582789,1,1,0),(3,5,1,0,32767,1,10)");
  for (const long id : {1, 2}) EXPECT_TRUE(db().UpdateAlertCheck(id, true));
  std::map<long, long> timers;
  EXPECT_TRUE(db().GetAlertCheckTimerValues(timers, nullptr, 0, nullptr));
  EXPECT_EQ(timers, (std::map<long, long>{{1, INT32_MIN + 52}, {2, 44}}));
  EXPECT_EQ(Record(1), 1);  // Negative: nothing is held back.
  EXPECT_EQ(Record(2), 0);
  Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<70000) INSERT INTO "
      "alert_logs_buffer(alert_event_type_id,event_time) SELECT 3,9999999999 FROM n");
  EXPECT_EQ(Record(3), 1);
}

std::string Refuse(const std::string& write) {
  return "CREATE TRIGGER refuse BEFORE " + write + " BEGIN SELECT RAISE(ABORT,'refused'); END";
}

TEST_F(AlertTimingTest, WhatFollowsTheBufferingStandsOrFallsAsOne) {
  AddTypes("(1,5,1,5,2,1,10)");
  for (const bool own_transaction : {false, true}) {
    for (const char* write :
         {"INSERT ON alert_logs", "DELETE ON alert_logs", "DELETE ON alert_logs_buffer"}) {
      Sql("DELETE FROM alert_logs; DELETE FROM alert_logs_buffer;"
          "INSERT INTO alert_logs VALUES(1,1,NULL,'old',5,NULL,1,1);" +
          Refuse(write));
      EXPECT_TRUE(!own_transaction || db().Transaction(TRANSACTION_BEGIN));
      EXPECT_EQ(Record(1), 0) << write;
      EXPECT_EQ(Record(1), -1) << write;
      EXPECT_TRUE(!own_transaction || db().Transaction(TRANSACTION_COMMIT));
      EXPECT_EQ(Row("SELECT (SELECT details FROM alert_logs),count(*) FROM alert_logs_buffer"),
                "old|2")
          << write;
      Sql("DROP TRIGGER refuse");
      EXPECT_EQ(Record(1), 1) << write;
      EXPECT_EQ(Row("SELECT details,alert_name FROM alert_logs"), "d|n");
      EXPECT_EQ(Row("SELECT count(*) FROM alert_logs_buffer"), "0");
    }
  }
  Sql("DROP TABLE alert_logs_buffer");
  EXPECT_THROW(CAlertLogBuffer::AddAlertLogBuffer(handle(), &Type(1), "x"), int);
}

TEST_F(AlertTimingTest, ALockedFileChangesNothing) {
  AddTypes("(1,5,1,5,2,1,10),(2,5,1,5,1,1,10)");
  EXPECT_TRUE(db().UpdateAlertCheck(2, true));
  const auto before = State();
  const CAlertLog log(&Type(1), "x", -1, -1);
  std::vector<long> to_send;
  CPolicyDB session = Open(0);
  Sql("BEGIN IMMEDIATE");
  EXPECT_EQ(session.AddAlertLogBuffer(&Type(2), "x"), 0);  // Held back before any write.
  EXPECT_EQ(session.AddAlertLogBuffer(&Type(1), "x"), -1);
  EXPECT_FALSE(session.AddAlertLogBuffer(to_send, 5, "x"));
  EXPECT_FALSE(session.AddAlertLog(&log));
  Sql("COMMIT");
  EXPECT_TRUE(session.Transaction(TRANSACTION_BEGIN));  // None was left open.
  session.CloseDB();
  EXPECT_EQ(State(), before);
  EXPECT_TRUE(db().Transaction(TRANSACTION_BEGIN));  // The caller's own.
  EXPECT_EQ(Record(1), 0);
  EXPECT_EQ(Record(1), 1);
  EXPECT_TRUE(db().Transaction(TRANSACTION_ROLLBACK));
  EXPECT_EQ(State(), before);
}

TEST_F(AlertTimingTest, ALogStartsItsTimerAlsoWhenItIsNotStored) {
  AddTypes("(1,5,1,5,2,1,10)");
  const CAlertLog log(&Type(1), "x", -1, -1);
  RecordList<CAlertLog> logs;
  Sql(Refuse("INSERT ON alert_logs"));
  EXPECT_FALSE(db().AddAlertLog(&log));
  EXPECT_EQ(db().GetAlertCheckTime(1), log.event_start);
  Sql("DROP TRIGGER refuse;" + Refuse("INSERT ON alert_checks"));
  EXPECT_FALSE(db().AddAlertLog(&log));
  EXPECT_EQ(Row("SELECT count(*) FROM alert_logs"), "0");
  EXPECT_FALSE(db().GetAlertLogs(logs.list, 1));
  EXPECT_EQ(db().GetError(), R"({"code": 19,"desc": "refused"})");
  Sql("DROP TRIGGER refuse");
  EXPECT_TRUE(db().GetAlertLogs(logs.list, 1));
  EXPECT_TRUE(db().AddAlertLog(&log));
}

constexpr std::size_t kPerProcess = 100;

const ChildFunction record_occurrences("record_occurrences", [](const Arguments&) {
  CPolicyDB db(kAccessCode, CFilePaths::GetLocationDB().c_str(), kReadWrite, 20000);
  CAlertEventType type;
  bool done = db.GetAlertEventType(&type, 1L);
  for (std::size_t i = 0; done && i < kPerProcess; ++i) {
    const long result = db.AddAlertLogBuffer(&type, "x");
    done = result == 0 || (result == 1 && db.AddAlertSent(1) == SQLITE_DONE);
  }
  return done ? 0 : 1;
});

TEST_F(AlertTimingTest, TwoProcessesLoseNoOccurrence) {
  AddTypes("(1,5,1,0,7,1,10000)");
  ChildProcess first(environment().folder(), "record_occurrences");
  ChildProcess second(environment().folder(), "record_occurrences");
  EXPECT_TRUE(first.Succeeded());
  EXPECT_TRUE(second.Succeeded());
  // A log holds seven, and one more where the other process recorded before it was condensed.
  const std::size_t sent = Rows("SELECT 1 FROM alerts_sent").size();
  const std::size_t left = Rows("SELECT 1 FROM alert_logs_buffer").size();
  EXPECT_LE(7 * sent + left, 2 * kPerProcess);
  EXPECT_GE(8 * sent + left, 2 * kPerProcess);
}

}  // namespace
