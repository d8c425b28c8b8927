// Online backup: allowance, command lines, statistics.

#include "tests/support/policy_test.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"

namespace {

class OnlineBackupTest : public PolicyTest {};

TEST_F(OnlineBackupTest, AllowedOnlyWhenAccountDetailsAndServiceAgree) {
  Sql("INSERT INTO devices(id,account_id) VALUES(1,1); INSERT INTO accounts(id) VALUES(1);"
      "INSERT INTO account_backup_details(account_id) VALUES(1);"
      "INSERT INTO device_services(id,device_id,service_id,enabled) VALUES(1,1,3,1),(2,1,4,NULL)");
  EXPECT_FALSE(db().IsOnlineBackupAllowed(nullptr));  // No local device.
  CDeviceInfo::WriteDeviceID(1L);
  const std::string values[] = {"0", "1", "2", "NULL"};
  std::string allowing;
  for (int i = 0; i < 64; ++i) {
    const std::string set[] = {values[i / 16], values[i / 4 % 4], values[i % 4]};
    Sql("UPDATE accounts SET account_status_id=" + set[0]);
    Sql("UPDATE account_backup_details SET backups_allowed=" + set[1]);
    Sql("UPDATE device_services SET enabled=" + set[2] + " WHERE service_id=4");
    if (db().IsOnlineBackupAllowed(L"x")) allowing += set[0] + set[1] + set[2] + " ";
  }
  EXPECT_EQ(allowing, "111 112 11NULL 121 122 12NULL ");
}

TEST_F(OnlineBackupTest, CommandLines) {
  CDeviceBackupDetail detail;
  // The three lines, each left as it was when it cannot be built.
  const auto lines = [&detail] {
    std::wstring install = L"1", back_up = L"2", ui = L"3";
    EXPECT_EQ(detail.BuildInstallCmdLineParameters(install), detail.login && detail.password);
    EXPECT_EQ(detail.BuildBackUpNowCmdLineParameters(back_up), detail.login != nullptr);
    EXPECT_EQ(detail.BuildUICmdLineParameters(ui), detail.login && detail.password);
    return install + L"|" + back_up + L"|" + ui;
  };
  detail.password = L"p w";
  EXPECT_EQ(lines(), L"1|2|3");
  detail.login = L"u";
  EXPECT_EQ(lines(), L"-s -l \"" + CFilePaths::GetOlbInstallLogFilePath() +
                         L"\"|backupnow u -silent|-username:u -password:p w");
  detail.password = nullptr;
  EXPECT_EQ(lines(), L"1|backupnow u -silent|3");
  for (const int id : {-1, 0, 1}) {
    detail.id = id;
    EXPECT_EQ(detail.IsValid(), id == 1) << id;
  }
  detail.login = nullptr;
  EXPECT_FALSE(detail.IsValid());
}

TEST_F(OnlineBackupTest, AccountPasswordAndDetailsById) {
  CAccountBackupDetail account;
  wchar_t given[] = L"b@ckup-\u00e4";
  EXPECT_FALSE(db().GetAccountBackupDetails(&account));
  EXPECT_EQ(account.IsValidPassword(given), PASSWORD_NO_POLICY);
  account.password = given;
  EXPECT_EQ(account.IsValidPassword(given), PASSWORD_VALID);
  for (const wchar_t* other : {L"", L"b@ckup-", L"B@ckup-\u00e4", (const wchar_t*)nullptr}) {
    EXPECT_EQ(account.IsValidPassword(other), PASSWORD_INVALID);
  }

  ASSERT_TRUE(db().ClearAndAddDeviceBackupDetails(
      R"([{"id": 5,"device_id": 9},{"id": 6,"device_id": 5},{"id": 7,"device_id": 8}])"));
  CDeviceBackupDetail detail;
  EXPECT_TRUE(db().GetDeviceBackupDetails(&detail, 5));
  EXPECT_EQ(detail.device_id, 9);
  EXPECT_TRUE(db().GetDeviceBackupDetails(&detail, 8));
  EXPECT_EQ(detail.id, 7);
  EXPECT_FALSE(db().GetDeviceBackupDetails(&detail, 10));
}

TEST_F(OnlineBackupTest, StatisticsKeepTwoKeysToThemselves) {
  EXPECT_EQ(CDeviceBackupStatistics::GetCurrentUsage(handle()), -1);
  ASSERT_TRUE(db().ClearAndAddDeviceBackupStatistics(
      R"({"backup_status_id": 1,"backup_success_date": 3,"error_file_size": 9,"current_usage": 8})"));
  CDeviceBackupStatistics statistics;
  ASSERT_TRUE(db().GetDeviceBackupStatistics(&statistics));
  EXPECT_EQ(statistics.backup_success_date + statistics.error_file_size, 12);
  EXPECT_EQ(Json(statistics), R"({"backup_status_id": 1,"current_usage": 8})");
  EXPECT_EQ(CDeviceBackupStatistics::GetCurrentUsage(handle()), 8);
}

TEST_F(OnlineBackupTest, StatisticsOfASession) {
  COnlineBackupSession session;
  session.start_date = 1000;
  session.end_date = 1090;
  session.backup_bytes = 5000;
  const int cases[][2] = {{0, 5}, {1, 1}, {2, 4}, {3, 6}, {4, 2}, {-1, 2}};
  for (const auto& [result, status] : cases) {
    session.result_code = result;
    session.stopped_by_user = false;
    const CDeviceBackupStatistics statistics(session);
    EXPECT_EQ(statistics.backup_status_id, status) << result;
    EXPECT_EQ(statistics.backup_success_date, status == 1 ? 1090 : -1) << result;
    EXPECT_EQ(Join(statistics.backup_duration, statistics.backup_size), "90 4");
    session.stopped_by_user = true;
    EXPECT_EQ(CDeviceBackupStatistics(session).backup_status_id, result == 0 ? 3 : status);
  }
  session.start_date = 1100;
  session.backup_bytes = -1;
  CDeviceBackupStatistics statistics(session);
  EXPECT_EQ(Json(statistics), R"({"backup_status_id": 2,"backup_status_date": 1090})");
  EXPECT_EQ(statistics.HowLongAgoLastSuccessfulBackupRan(), 7201);
  statistics.backup_success_date = wexpol::NowUtc() - 10'000;
  EXPECT_EQ(statistics.HowLongAgoLastSuccessfulBackupRan(), 10'000);
}

}  // namespace
