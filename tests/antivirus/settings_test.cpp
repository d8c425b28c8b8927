// The settings of the antivirus component and the summary of its last scan.

#include "tests/support/policy_test.h"

namespace {

using AntivirusSettingsTest = PolicyTest;

TEST_F(AntivirusSettingsTest, SettingsFromTheConsole) {
  CNxbAvSetting setting;
  EXPECT_FALSE(db().GetNxbAvSetting(&setting));
  for (const char* id : {(const char*)nullptr, "DEADBEEF", "deadbeef", "", "DEADBEEF1"}) {
    setting.nxb_settings_id = id;  // The console's sign that there are no settings.
    EXPECT_EQ(setting.IsValid(), id && id != std::string("DEADBEEF"));
  }

  CAppearance appearance;
  Sql("INSERT INTO appearances(id,ignore_warning_components) VALUES(5,'3,')");
  EXPECT_TRUE(db().GetRecord(&appearance));
  EXPECT_EQ(Join(db().GetRecord(nullptr), db().GetNxbAvSetting(&setting)), "0 0");
  const std::pair<const char*, std::set<long>> lists[] = {
      {nullptr, {}},     {"", {}},        {",,", {}},          {"3,,17,", {3, 17}},
      {"x,-4", {0, -4}}, {" ,5", {0, 5}}, {"12ab, 7", {7, 12}}};
  for (const auto& [list, expected] : lists) {
    appearance.ignore_warning_components = list;
    std::set<long> components;
    EXPECT_EQ(appearance.GetIgnoreWarningComponentSet(components), !expected.empty());
    EXPECT_EQ(components, expected);
  }

  ASSERT_TRUE(db().AddAvSchedules(
      "[{\"id\":9,\"schedule_name\":\"T\xC3\xA4glich\",\"period_available\":1,\"days_of_week\":[1],"
      "\"days_of_week_available\":true},{\"id\":10,\"days_of_week\":18}]"));
  EXPECT_EQ(Row("SELECT days_of_week,days_of_week_available,period_available FROM av_schedules"),
            "NULL|1|0");
  RecordList<CAvSchedule> schedules;
  ASSERT_TRUE(db().GetRecords(schedules.list));
  CAvSchedule& schedule = *schedules.list.front();
  EXPECT_FALSE(schedule.IsNameDifferent(L"T\u00E4glich"));
  schedule.SetScheduleName(nullptr);
  EXPECT_TRUE(schedule.IsNameDifferent(L""));
  EXPECT_EQ(schedules.list.back()->days_of_week, 18);
  EXPECT_TRUE(db().ClearAvSchedules());
}

TEST_F(AntivirusSettingsTest, ScanSummaryComesAsTextAndGoesAsNumber) {
  const std::string now = std::to_string(wexpol::NowUtc());
  const std::pair<std::string, std::string> cases[] = {
      {R"("2020-1-2T3:4:5")", "1577934245"},      {R"("2020-01-02T03:04:05Z")", "1577934245"},
      {R"("2024-02-29T00:00:00")", "1709164800"}, {R"("2023-02-29T00:00:00")", "NULL"},
      {R"("2020-01-02 03:04:05")", "NULL"},       {R"("2020-01-02T03:04")", "NULL"},
      {R"("99999999999-1-2T3:4:5")", "NULL"},     {R"("67556-1-2T3:4:5")", "NULL"},
      {R"("2020-1--2T3:4:5")", "NULL"},           {"1577934245", now}};
  for (const auto& [end, seconds] : cases) {
    const std::string json = R"({"id":4,"device_id":6,"threats_found":3,"end_time":)" + end + "}";
    ASSERT_TRUE(db().ClearAndAddLastScanSummaries(json.c_str()));
    EXPECT_EQ(Row("SELECT * FROM last_scan_summaries"), "NULL|6|" + seconds + "|3") << end;
  }
  CLastScanSummary summary;
  summary.id = 1;
  summary.end_time = 1577934245;
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(db().SetLastScanSummary(&summary));
  summary.end_time = -1;
  EXPECT_EQ(Json(summary), R"({"threats_found": 0})");
  ASSERT_TRUE(db().GetLastScanSummary(&summary));
  EXPECT_EQ(Json(summary), R"({"end_time": 1577934245,"threats_found": 0})");
}

}  // namespace
