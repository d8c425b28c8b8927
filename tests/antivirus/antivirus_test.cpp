// How long it is until a schedule runs: each rule, its log line, and an oracle that walks forward
// day by day; the settings of the antivirus component and the summary of its last scan.

#include <chrono>
#include <random>

#include "tests/support/policy_test.h"

namespace {

using namespace std::chrono;

constexpr std::int64_t kDay = 86'400'000;
constexpr int kNone = -1;

CAvSchedule Make(int days_of_week, int day_of_month, int minutes, int period = kNone,
                 int startup = 0) {
  CAvSchedule schedule;
  schedule.days_of_week_available = days_of_week != kNone;
  schedule.days_of_week = static_cast<short>(days_of_week);
  schedule.day_of_month_available = day_of_month != kNone;
  schedule.day_of_month = static_cast<short>(day_of_month);
  schedule.day_minutes = minutes;
  schedule.period_available = period != kNone;
  schedule.period_minutes = period;
  schedule.run_on_computer_startup = startup != 0;
  schedule.startup_minutes = startup;
  return schedule;
}

// Milliseconds of the day `now` and `run`. A run of today may be this moment; the end of a day is
// taken a millisecond early.
std::int64_t WalkToWeekday(int mask, std::int64_t run, sys_days today, std::int64_t now) {
  for (int ahead = 0; ahead <= 7; ++ahead) {
    if (!(mask >> weekday(today + days(ahead)).c_encoding() & 1)) continue;
    if (ahead > 0) return (ahead * kDay - 1 - now) / 1000 + run / 1000;
    if (now <= run) return (run - now) / 1000;
  }
  return (8 * kDay - 1 - now) / 1000;
}

// A leap day is forgotten; where the next month has no such day, it runs over into the one after.
std::int64_t WalkToDayOfMonth(int wanted, std::int64_t run, sys_days today, std::int64_t now) {
  const year_month_day date(today);
  sys_days day = today;
  for (; year_month_day(day).month() == date.month(); day += days(1)) {
    const std::int64_t seconds = (day - today).count() * 86'400 + run / 1000 - now / 1000;
    if (year_month_day(day).day() == std::chrono::day(unsigned(wanted)) && seconds > 0) {
      return seconds;
    }
  }
  const bool forgotten = date.month() == February && date.year().is_leap();
  const std::int64_t to_first = ((day - today).count() - forgotten) * kDay - 1 - now;
  return to_first / 1000 + (wanted - 1) * 86'400 + run / 1000;
}

class ScheduleTest : public ::testing::Test {
 protected:
  FakeClock& clock() { return environment_.clock(); }
  bool Logged(const std::string& line) {
    return ReadBytes(CFilePaths::GetLocationLogFile()).find(line) != std::string::npos;
  }
  TestEnvironment environment_;
};

TEST_F(ScheduleTest, AgreesWithWalkingForward) {
  std::mt19937 random(11);
  const auto pick = [&](int count) { return static_cast<int>(random() >> 1) % count; };
  for (int i = 0; i < 2000; ++i) {
    const int minutes = pick(3) ? pick(1440) : pick(2) * 1439;
    const int run = minutes * 60'000;
    const int now = pick(2) ? pick(kDay) : std::array{0, 1, run, run + 1, int{kDay} - 1}[pick(5)];
    const sys_days today = sys_days(year(2019) / 1 / 1) + days(pick(4400));
    const year_month_day date(today);
    clock().SetLocal(int(date.year()), int(unsigned(date.month())), int(unsigned(date.day())),
                     now / 3'600'000, now / 60'000 % 60, now / 1000 % 60, now % 1000);
    const int mask = pick(128);
    ASSERT_EQ(Make(mask, kNone, minutes).HowLongUntilSchedule(),
              WalkToWeekday(mask, run, today, now))
        << i;
    const int day = 1 + pick(31);
    ASSERT_EQ(Make(kNone, day, minutes).HowLongUntilSchedule(),
              WalkToDayOfMonth(day, run, today, now))
        << i;
  }
}

TEST_F(ScheduleTest, EachRuleAndItsLogLine) {
  CAvSchedule interval = Make(127, kNone, 121);
  interval.day_interval_available = true;
  const struct {
    CAvSchedule schedule;
    int day, hour;  // Of April 2024; the 15th was a Monday.
    std::uint32_t ticks;
    long seconds;
    const char* logged;
  } cases[] = {
      {Make(kNone, kNone, 0), 1, 0, 0, -1, ""},
      {Make(kNone, kNone, 0, kNone, 10), 1, 0, 240'000, 360,
       "milliseconds_elapsed_since_system_start = 240000, milliseconds = 600000"},
      {Make(kNone, kNone, 0, kNone, 10), 1, 0, 600'000, -1, "= 600000, milliseconds = 600000"},
      {Make(127, 16, 60, 60, 10), 1, 0, 660'000, 0, "= 660000, milliseconds = 600000"},
      {Make(kNone, kNone, 0, kNone, -1), 1, 0, 0, 4'294'907, "= 0, milliseconds = -60000"},
      {interval, 15, 1, 0, 3660, "day_interval_available not supported"},
      {Make(18, kNone, 120), 15, 1, 0, 3600,
       "nMillisecondsElapsedToday = 3600000, milliseconds = 7200000"},
      {Make(18, kNone, 120), 15, 3, 0, 255'599, "nSecondsLeft = 255599"},
      {Make(0, kNone, 120), 15, 0, 0, 691'199, "nSecondsLeft = 691199"},
      {Make(kNone, 16, 60), 15, 12, 0, 46'800, "nSecondsLeft = 46800 (this month)"},
      {Make(kNone, 1, 0), 15, 12, 0, 1'339'199, "nSecondsLeft = 1339199 (next month)"},
      {Make(kNone, 15, INT32_MIN), 16, 12, 0, 2'462'399,
       "nSecondsLeft = -128846556481 (next month)"},
      // No day has 1441 minutes: as if it had passed.
      {Make(kNone, 15, 1441), 15, 12, 0, 2'635'259, "nSecondsLeft = -13357656000 (this month)"},
  };
  for (const auto& c : cases) {
    clock().SetLocal(2024, 4, c.day, c.hour);
    clock().SetTickCount(c.ticks);
    EXPECT_EQ(c.schedule.HowLongUntilSchedule(), c.seconds) << c.logged;
    EXPECT_TRUE(Logged(c.logged)) << c.logged;
  }
  // The ticks wrap, and the delay begins again.
  const CAvSchedule startup = Make(kNone, kNone, 0, kNone, 10);
  clock().SetTickCount(UINT32_MAX - 59'999);
  EXPECT_EQ(startup.HowLongUntilSchedule(), -1);
  clock().Advance(120);
  EXPECT_EQ(startup.HowLongUntilSchedule(), 540);
}

TEST_F(ScheduleTest, PeriodRunsFromTheLastRun) {
  const CAvSchedule schedule = Make(kNone, kNone, 0, 60);
  EXPECT_EQ(schedule.HowLongUntilSchedule(), 0);
  clock().SetLocalOffset(7200);
  ASSERT_TRUE(CAvSchedule::WriteUpdateTime());
  SYSTEMTIME last_run;
  ASSERT_TRUE(CAvSchedule::ReadUpdateTime(last_run));
  EXPECT_EQ(last_run.wHour, 14);
  // Seconds that pass, local offset; seconds left. The clock is set back behind the last run; the
  // hour of a change to or from daylight time counts as passed, or comes again.
  const std::int64_t steps[][3] = {{3570, 7200, 30},    {29, 7200, 1},     {1, 7200, 0},
                                   {-3700, 7200, 3700}, {1900, 10'800, 0}, {0, 3600, 5400}};
  for (const auto& [advance, offset, seconds] : steps) {
    clock().Advance(advance);
    clock().SetLocalOffset(offset);
    EXPECT_EQ(schedule.HowLongUntilSchedule(), seconds) << advance;
  }
  EXPECT_TRUE(Logged("how_long_has_it_been = -100, frequency_in_seconds = 3600"));
  EXPECT_TRUE(wexpol::WriteBinary(wexpol::AgentKey::kAgent, L"UT", &last_run, 15));
  EXPECT_FALSE(CAvSchedule::ReadUpdateTime(last_run));
  EXPECT_EQ(schedule.HowLongUntilSchedule(), 0);
}

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

  Sql("INSERT INTO av_schedules(id,schedule_name) VALUES(9,'Täglich'),(10,NULL)");
  RecordList<CAvSchedule> schedules;
  ASSERT_TRUE(db().GetRecords(schedules.list));
  CAvSchedule& schedule = *schedules.list.front();
  EXPECT_FALSE(schedule.IsNameDifferent(L"T\u00E4glich"));
  schedule.SetScheduleName(nullptr);
  EXPECT_TRUE(schedule.IsNameDifferent(L""));
  EXPECT_EQ(schedules.list.back()->id, 10);
}

TEST_F(AntivirusSettingsTest, AScanSummaryIsReportedAsNumbers) {
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
