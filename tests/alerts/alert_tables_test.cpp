// The tables behind the alerts: documents in, rows and reports out, and the plain questions.

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
  environment().clock().SetLocalOffset(-5 * 3600);
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
  EXPECT_EQ(start, -7);
  EXPECT_TRUE(CAlertLog::GetStartAndEndTimes(handle(), start, end, 1));
  EXPECT_EQ(end - start, 1710331200 - 5);
  RecordList<CAlertLog> logs;
  EXPECT_TRUE(db().GetAlertLogs(logs.list, 1));
  EXPECT_TRUE(db().DeleteAlertLog(logs.list.front()));
  EXPECT_EQ(Rows("SELECT id FROM alert_logs"), (Texts{"2", "3"}));
  EXPECT_TRUE(db().DeleteAlertLogs(1));
  EXPECT_EQ(Rows("SELECT id FROM alert_logs"), Texts{"3"});
  EXPECT_TRUE(db().DeleteAlertLogs(0));
  EXPECT_EQ(Rows("SELECT id FROM alert_logs"), Texts());
  EXPECT_FALSE(db().DeleteAlertLog(nullptr));
}

TEST_F(AlertTablesTest, SentAlertsAreKeptByKindOfEvent) {
  for (const short kind : {short{5}, short{6}, short{-1}}) EXPECT_EQ(db().AddAlertSent(kind), 101);
  EXPECT_TRUE(db().DidWeSendThisTypeOfAlert(5));
  EXPECT_FALSE(db().DidWeSendThisTypeOfAlert(-1));  // Stored as NULL, found by nothing.
  EXPECT_FALSE(db().DidWeSendThisTypeOfAlertBeforeThisTime(5, 1710331200));
  EXPECT_TRUE(db().DidWeSendThisTypeOfAlertBeforeThisTime(5, 1710331201));
  EXPECT_FALSE(db().DidWeSendThisTypeOfAlertBeforeThisTime(7, 1710331201));  // Another kind.
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

}  // namespace
