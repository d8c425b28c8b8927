// Online backup, remote control, restart policy, support display, the brand and the time zone.

#include <algorithm>
#include <cstring>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "wexpol/devicecare/brand.h"
#include "wexpol/devicecare/safe_reboot.h"
#include "wexpol/platform/registry.h"
#include "wexpol/platform/shared_memory.h"

namespace {

using OnlineBackupTest = PolicyTest;

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

using wexpol::AgentKey;
using wexpol::Brand;

class DeviceCareTest : public PolicyTest {
 protected:
  ~DeviceCareTest() override { wexpol::ReleaseBrandForTesting(); }
};

TEST_F(DeviceCareTest, RemoteControlUrlParameters) {
  CRemoteControlSetting setting;
  for (const int quality : {-1, 1, 3}) {
    setting.stream_quality_id = static_cast<std::int16_t>(quality);
    EXPECT_EQ(setting.GetStreamQualityCommandLineOption(), L"&color=64k") << quality;
  }
  setting.stream_quality_id = 2;
  setting.leave_effects = true;
  EXPECT_EQ(setting.GetStreamQualityCommandLineOption() + setting.GetLeaveCommandLineOptions(),
            L"&color=high_speed&leave_aero=false&leave_background=false&leave_effects=true");
}

TEST_F(DeviceCareTest, RemoteControlOfTheLocalDevice) {
  Sql("INSERT INTO devices(id,policy_id,allow_remote_connection) "
      "VALUES(0,2,1),(1,2,1),(7,3,0),(8,4,1);"
      "INSERT INTO policy_services(id,policy_id,service_id) VALUES(11,2,3),(12,3,3);"
      "INSERT INTO premium_remote_control_settings(id,policy_service_id) VALUES(20,11),(21,12)");
  // The local device, its setting, and whether it lets technicians in.
  const long cases[][3] = {{-1, -1, 0}, {0, -1, 0}, {1, 20, 1}, {7, 21, 0}, {8, -1, 1}, {9, -1, 0}};
  for (const auto& [device, setting, allowed] : cases) {
    if (device != -1) CDeviceInfo::WriteDeviceID(device);
    CRemoteControlSetting record;
    EXPECT_EQ(db().GetRemoteControlSettingIdForThisDevice(), setting) << device;
    EXPECT_EQ(db().GetRemoteControlSetting(&record), setting != -1) << device;
    EXPECT_EQ(record.id, setting) << device;
    EXPECT_EQ(db().IsVncConnectionAllowed(), allowed != 0) << device;
  }
}

TEST_F(DeviceCareTest, RestartCommandLine) {
  const auto line = [](const std::string& members, Brand brand, bool under_system,
                       const wchar_t* title, const wchar_t* service) {
    CRestartPolicySettings policy;
    EXPECT_TRUE(ParseText(policy, R"({"id": 1,"restart_required_option_id": )" + members + "}"));
    return wexpol::SafeRebootCommandLine(policy, brand, under_system, title, service);
  };
  EXPECT_EQ(line("1", Brand::kQel, false, L"Update", nullptr),
            L"-n \"Qel Corvane - Update\" -u \"Qel Antivirus Service\" -power 4 -demo -us  -o 8 ");
  EXPECT_EQ(line("0", Brand::kQel, false, L"Update", nullptr), L"");
  EXPECT_EQ(line("3", Brand::kQel, true, L"", L"S"), L"-n \"Qel Corvane - \" -u \"S\" -power 4 ");

  const std::string extend = R"(2,"user_extend_time": 30,"user_cancel_timeout_restart": true,)"
                             R"("display_dialog_countdown": 300,"display_system_countdown": )";
  const std::pair<std::string, std::wstring> cases[] = {
      {"1", L" -o 8 "},
      {"2", L"-w -1 -o 1 -s -1 -m -1 "},
      {extend + R"(0,"force_action_time": 60,"user_cancel_timeout_logs_off": true)",
       L"-i 30 -o 7 -s 300 -m 60 "},
      {extend + R"(15,"user_can_extend_time": false)", L"-w 15 -o 4 -s 300 -m -1 "},
      {R"(2,"user_extend_time": 0)", L"-w -1 -o 1 -s -1 -m -1 "},
      {R"(2,"user_extend_time": 1)", L"-i 1 -w -1 -o 1 -s -1 -m -1 "},
  };
  const std::wstring zentra = L"-n \"Zentra Corvane - Restart Required\" -u \"Zentra Antivirus";
  for (const auto& [members, options] : cases) {
    EXPECT_EQ(line(members, Brand::kZentra, true, nullptr, nullptr),
              zentra + L" Service\" -power 4 " + options);
  }
  EXPECT_TRUE(wexpol::IsProcessRunningAsServiceUnderSYSTEM(L"SYSTEM"));
  EXPECT_FALSE(wexpol::IsProcessRunningAsServiceUnderSYSTEM(L"system"));
}

TEST_F(DeviceCareTest, SupportDisplayIsAvailableOnceItHasARow) {
  EXPECT_FALSE(db().IsSupportDisplaySettingsAvailable());
  EXPECT_TRUE(db().ClearAndAddSupportDisplaySettings("{}"));  // No key is required.
  EXPECT_TRUE(db().IsSupportDisplaySettingsAvailable());
}

// The maker that a command line of this process names.
std::wstring Maker() {
  std::wstring line;
  CRestartPolicySettings().GetIvantiSafeRebootCommandLineOptions(line, L"T", nullptr);
  return line.substr(4, line.find(L' ', 4) - 4);
}

// Succeeds when the block holds brand 6 of "Shared".
const ChildFunction kSeesBlock("sees_brand_block", [](const Arguments&) {
  const auto info = wexpol::ReadBrandInfo();
  return info && info->brand_id == 6 && info->product_name == L"Shared" ? 0 : 1;
});

TEST_F(DeviceCareTest, BrandBlockIsFilledByItsCreatorAndTakenAsItIs) {
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, L"Corvane Agent");
  EXPECT_EQ(wexpol::ReadBrandInfo()->brand_id, 0);
  wexpol::ReleaseBrandForTesting();
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"PN", std::wstring(100, L'x')));
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, std::wstring(80, L'x'));
  wexpol::ReleaseBrandForTesting();
  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 6));
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"PN", L"Shared"));
  EXPECT_EQ(Maker(), L"Qel");
  const wexpol::NamedMapping block(L"Global\\LumoraBrandInfo", 168);
  EXPECT_FALSE(block.created());
  EXPECT_EQ(std::memcmp(block.data(), u"\6\0Shared\0", 20), 0);
  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 1));
  ChildProcess first(environment().folder(), "sees_brand_block");
  ChildProcess second(environment().folder(), "sees_brand_block");
  EXPECT_EQ(Join(first.Succeeded(), second.Succeeded()), "1 1");
}

TEST_F(DeviceCareTest, BrandOfAHostileBlock) {
  const wexpol::NamedMapping block(L"Global\\LumoraBrandInfo", 168);
  ASSERT_TRUE(block.created());
  std::memset(block.data(), 'A', 168);  // No terminator anywhere.
  EXPECT_EQ(wexpol::ReadBrandInfo()->product_name, std::wstring(80, L'\x4141'));
  EXPECT_EQ(Maker(), L"Zentra");
  for (const std::int32_t id : {4, 5, 6, 7, -1}) {
    std::memcpy(block.data(), &id, sizeof id);
    EXPECT_EQ(Maker(), id == 5 || id == 6 ? L"Qel" : L"Zentra") << id;
  }
}

constexpr auto kDecode = &CTimeZone::ConvertCommaSeparatedWindowsDataToTZI;

struct Zone {
  std::wstring name;
  std::string text;
  REG_TZI_FORMAT record;
};
const Zone kZones[] = {
    {L"W. Europe Standard Time",
     "c4,ff,ff,ff,00,00,00,00,c4,ff,ff,ff,00,00,0a,00,00,00,05,00,03,00,00,00,00,00,00,00,"
     "00,00,03,00,00,00,05,00,02,00,00,00,00,00,00,00",
     {-60, 0, -60, {0, 10, 0, 5, 3, 0, 0, 0}, {0, 3, 0, 5, 2, 0, 0, 0}}},
    {L"Pacific Standard Time",
     "E0,01,00,00,00,00,00,00,C4,FF,FF,FF,00,00,0B,00,00,00,01,00,02,00,00,00,00,00,00,00,"
     "00,00,03,00,00,00,02,00,02,00,00,00,00,00,00,00, and what follows is not looked at",
     {480, 0, -60, {0, 11, 0, 1, 2, 0, 0, 0}, {0, 3, 0, 2, 2, 0, 0, 0}}},
};

bool IsSame(const REG_TZI_FORMAT& a, const REG_TZI_FORMAT& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(TimeZoneTest, DecodesWhatTheSystemHasOfTheZone) {
  for (const Zone& zone : kZones) {
    REG_TZI_FORMAT decoded;
    for (const char separator : {',', ';', 'a'}) {  // Any will do, a digit as well.
      std::string text = zone.text;
      std::replace(text.begin(), text.end(), ',', separator);
      EXPECT_TRUE(kDecode(&decoded, text.c_str())) << text;
      EXPECT_TRUE(IsSame(decoded, zone.record)) << text;
    }
    CRegistryVeyra key;  // The machine's own, which the host does not have.
    key.Open(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones\\" + zone.name,
             wexpol::RegistryAccess::kRead, wexpol::RegistryView::k64Bit);
    if (key.QueryBinaryValue(L"TZI", &decoded, sizeof decoded)) {
      EXPECT_TRUE(IsSame(decoded, zone.record)) << zone.text;
    }
  }
}

TEST(TimeZoneTest, MalformedText) {
  const std::string whole = kZones[0].text;
  REG_TZI_FORMAT decoded = {77, 0, 0, {}, {}};
  EXPECT_EQ(Join(kDecode(&decoded, whole.c_str() + 1), kDecode(&decoded, nullptr)), "0 0");
  EXPECT_EQ(decoded.Bias, 77);
  // A number ends before its first wrong digit; there may be none of it.
  const std::pair<std::string, int> cases[] = {{"1g", 1}, {"g1", 0}, {" 7", 7}, {"-1", 255}};
  for (const auto& [digits, byte] : cases) {
    EXPECT_TRUE(kDecode(&decoded, (digits + whole.substr(2)).c_str()));
    EXPECT_EQ(decoded.Bias & 255, byte) << digits;
  }
}

using TimeInfoTest = PolicyTest;

TEST_F(TimeInfoTest, ZoneOfTheDeviceElseOfTheAccount) {
  Sql("INSERT INTO devices(id,token) VALUES(1,'t'); INSERT INTO time_servers(id,url)"
      " VALUES(1,'b.test'),(2,'a.test'),(3,'b.test'),(4,NULL); INSERT INTO"
      " time_zones(id,windows_data) VALUES(1,'" +
      kZones[0].text + "'),(2,'" + kZones[1].text + "'),(3,'c4,ff')");
  // `zone` is the one that is answered; null where the caller's structure is left alone.
  const auto check = [&](const char* device, const char* account, bool answer, const Zone* zone) {
    Sql(std::string("DELETE FROM accounts; UPDATE devices SET time_zone_id=") + device +
        "; INSERT INTO accounts(id,time_zone_id) VALUES(1," + account + ")");
    TIME_ZONE_INFORMATION out, expected;
    std::memset(&out, 1, sizeof out);
    std::memset(&expected, zone ? 0 : 1, sizeof expected);
    if (zone) {
      const REG_TZI_FORMAT& record = zone->record;
      expected = {record.Bias, {}, record.StandardDate, 0, {}, record.DaylightDate, -60};
    }
    std::set<std::string> servers;
    EXPECT_EQ(db().GetTimeInfo(&out, servers), answer) << device << account;
    EXPECT_EQ(std::memcmp(&out, &expected, sizeof out), 0) << device << account;
    EXPECT_EQ(servers, (std::set<std::string>{"a.test", "b.test"}));
  };
  check("1", "2", true, &kZones[0]);
  long stored = -1;
  EXPECT_TRUE(CDeviceInfo::GetDeviceID(&stored));
  EXPECT_EQ(stored, 1);  // Found by its token and remembered.
  check("0", "2", true, &kZones[1]);
  check("NULL", "2", true, &kZones[1]);
  check("NULL", "0", true, nullptr);
  check("3", "2", false, nullptr);  // Not decodable.
  check("4", "2", false, nullptr);  // No such zone.
  CDeviceInfo::WriteDeviceID(8L);
  check("1", "2", true, &kZones[1]);
  check("1", "0", false, nullptr);
}

}  // namespace
