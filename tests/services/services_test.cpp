// Services: the questions about the local device, automatic upgrades, the installer's options, the
// attempt counters, which Windows is a server, and versions of sub-services.

#include "tests/support/policy_test.h"
#include "wexpol/services/server_edition.h"
#include "wexpol/services/service_attempts.h"

namespace {

using wexpol::AgentKey;
using std::string_literals::operator""s;

class ServicesTest : public PolicyTest {
 protected:
  void SetUp() override {
    Sql("INSERT INTO accounts(id,account_status_id) VALUES(1,1);"
        "INSERT INTO devices(id,account_id,token) VALUES(1,1,'t')");
    ASSERT_TRUE(db().AddDeviceServices(
        R"({"device_services":[
          {"id":1,"device_id":1,"service_id":1,"device_service_status_id":1,"enabled":true},
          {"id":2,"device_id":1,"service_id":2,"device_service_status_id":2,"enabled":false},
          {"id":3,"device_id":1,"service_id":3,"device_service_status_id":3,"enabled":1},
          {"id":4,"device_id":1,"service_id":4,"device_service_status_id":4,"enabled":0},
          {"id":5,"device_id":1,"service_id":5,"device_service_status_id":4,"enabled":true},
          {"id":6,"device_id":1,"service_id":6,"device_service_status_id":5,"enabled":true},
          {"id":7,"device_id":1,"service_id":7,"device_service_status_id":7},
          {"id":8,"device_id":8,"service_id":8,"device_service_status_id":4,"enabled":true}]})"))
        << db().GetError();
  }

  // What is true of each service of the local device, one letter each.
  std::string Answers() {
    std::string letters;
    for (short service = 1; service <= 9; ++service) {
      CDeviceService row;
      if (db().IsServiceInstallNeeded(service, -1)) letters += 'N';
      if (db().GetDeviceService(row, service) && row.IsServiceInstallNeeded()) letters += 'n';
      if (db().IsServiceInstalled(service)) letters += 'I';
      if (db().IsServiceInstalledAndEnabled(service)) letters += 'B';
      if (db().IsServiceEnabled(service, true)) letters += 'A';
      if (db().IsServiceEnabled(service, false)) letters += 'E';
      if (db().IsServiceAvailable(service)) letters += 'V';
      letters += '|';
    }
    return letters;
  }
};

TEST_F(ServicesTest, QuestionsAboutTheLocalDevice) {
  EXPECT_EQ(Answers(), "NnAEV|NnV|NnAEV|nIV|nIBAEV|AE|V|||");
  Sql("UPDATE accounts SET account_status_id=2");
  EXPECT_EQ(Answers(), "NnEV|NnV|NnEV|nIV|nIEV|E|V|||");
  EXPECT_EQ(Join(db().IsServiceInstallNeeded(1, 1), db().IsServiceInstallNeeded(1, 8),
                 db().IsDeviceServiceAvailable(8, 8), db().IsDeviceServiceAvailable(8, 1)),
            "1 0 1 0");
  for (const char* lost : {"UPDATE devices SET token=NULL", "DROP TABLE device_services"}) {
    Sql(lost);
    CDeviceInfo::WriteDeviceID(lost[0] == 'U' ? -1L : 1L);
    EXPECT_EQ(Answers(), "|||||||||") << lost;
    CAvComponents components;
    EXPECT_FALSE(db().GetAvComponents(components)) << lost;
  }
}

// Some questions take a stored id as it is, the others only from 1 on.
TEST_F(ServicesTest, AStoredIdBelowOne) {
  for (const char* id : {"0", "-7"}) {
    CDeviceInfo::WriteDeviceID(std::atol(id));
    Sql("UPDATE device_services SET device_id="s + id + " WHERE id<8; UPDATE devices SET id=" + id);
    EXPECT_EQ(Answers(), "Nn|Nn|Nn|nI|nIB|||||") << id;
  }
}

TEST_F(ServicesTest, OneColumnCanBeWritten) {
  EXPECT_TRUE(db().SetDeviceServiceInfo(1, "device_service_status_id", 4));
  EXPECT_TRUE(db().SetDeviceServiceInfo(99, "enabled", 1));
  for (const char* column : {"unknown", "", "enabled=1,id", "enabled--", "[enabled]"}) {
    EXPECT_FALSE(db().SetDeviceServiceInfo(1, column, 0)) << column;
  }
  EXPECT_FALSE(db().SetDeviceServiceInfo(1, nullptr, 0));
  EXPECT_EQ(Row("SELECT id,device_service_status_id,enabled FROM device_services"), "1|4|1");
}

TEST_F(ServicesTest, AutomaticUpgrades) {
  Sql("UPDATE device_services SET upgrade_action_id=1");
  std::set<short> services;
  EXPECT_TRUE(db().GetServicesMarkedForAutoUpgrade(services));
  EXPECT_TRUE(services.empty());
  Sql("UPDATE device_services SET upgrade_action_id=service_id WHERE service_id IN (2,5,8)");
  EXPECT_TRUE(db().GetServicesMarkedForAutoUpgrade(services));
  EXPECT_EQ(services, (std::set<short>{2, 5}));
  EXPECT_TRUE(CDeviceService::GetServicesMarkedForAutoUpgrade(handle(), services, 0));
  EXPECT_EQ(services, (std::set<short>{2, 5, 8}));
  Sql("DROP TABLE device_services");
  EXPECT_FALSE(db().GetServicesMarkedForAutoUpgrade(services));
}

TEST_F(ServicesTest, ComponentsOfTheAntivirus) {
  CAvComponents components;
  ASSERT_TRUE(db().GetAvComponents(components));
  EXPECT_TRUE(components.with_web_guard);
  EXPECT_TRUE(components.with_file_eraser);
  Sql("UPDATE device_services SET with_web_guard=0,with_camera_guard=5,with_isolation=NULL "
      "WHERE service_id=1");
  ASSERT_TRUE(db().GetAvComponents(components));
  EXPECT_EQ(Join(components.with_camera_guard, components.with_identity_guard,
                 components.with_web_guard, components.with_isolation),
            "1 1 0 0");
}

TEST(DeviceService, InstallerOptions) {
  CDeviceService service(1, 4, true);
  service.with_camera_guard = true;
  service.with_isolation = false;
  std::string options = ";";
  service.BuildCustonIni(options);
  EXPECT_EQ(options,
            ";opt_web_guard=1\nopt_firewall=0\nopt_mail_guard=0\nopt_identity_guard=1\n"
            "opt_spam_filter=0\nopt_isolation=0\nopt_file_guard=1\nopt_recovery_media=1\n"
            "opt_site_rating=0\nopt_mail_server_guard=0\nopt_portal_server_guard=0\n"
            "opt_browser_cleaner=0\nopt_vpn_client=0\nopt_secure_browser=0\nopt_file_eraser=1\n"
            "opt_app_updater=0\nopt_network_scanner=0\nopt_dns_guard=0\nopt_password_vault=0\n"
            "opt_camera_guard=1\n");
}

TEST_F(ServicesTest, ThreeAttemptsAreCounted) {
  EXPECT_EQ(db().IncrementServiceInstallAttempts(4), -1);
  EXPECT_FALSE(db().SetServiceStatus(4, 2));
  EXPECT_EQ(db().IncrementServiceDownloadAttempts(4), -1);
  EXPECT_TRUE(db().SetServiceStatus(4, 3));
  for (const int expected : {1, 1, 1, 0, 0}) {
    EXPECT_EQ(db().IncrementServiceInstallAttempts(4), expected);
  }
  std::uint32_t count = 9;
  EXPECT_TRUE(wexpol::ReadDword(AgentKey::kAgent, L"SIA04", &count));
  EXPECT_EQ(count, 3u);
  EXPECT_FALSE(db().HasExceededServiceInstallAttempts(4));
  for (const auto& [stored, exceeded] : {std::pair(4u, true), std::pair(0xFFFFu, false)}) {
    EXPECT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"SDA04", stored));
    EXPECT_EQ(db().HasExceededServiceDownloadAttempts(4), exceeded);
  }
  EXPECT_EQ(db().IncrementServiceDownloadAttempts(4), 1);  // As a 16-bit number it was -1.
  EXPECT_TRUE(wexpol::WriteText(AgentKey::kAgent, L"SIA05", L"1"));
  EXPECT_EQ(db().IncrementServiceInstallAttempts(5), -1);
  short attempts = 9;
  EXPECT_FALSE(db().ReadServiceAttemptsFromRegistry(attempts, 6, L"SIA%02d"));
  EXPECT_TRUE(db().WriteServiceAttemptsToRegistry(6, -2, L"SIA%02d"));
  EXPECT_TRUE(wexpol::ReadDword(AgentKey::kAgent, L"SIA06", &count));
  EXPECT_EQ(count, 0xFFFFFFFEu);
  EXPECT_TRUE(db().ReadServiceAttemptsFromRegistry(attempts, 6, L"SIA%02d"));
  EXPECT_EQ(attempts, -2);
}

TEST(ServiceAttempts, NamesOfTheCounts) {
  EXPECT_EQ(wexpol::AttemptsValueName(4, wexpol::kDownloadAttempts), L"SDA04");
  EXPECT_EQ(wexpol::AttemptsValueName(-32768, L"%s%n%02d%02d"), L"%s%n-32768%02d");
  EXPECT_EQ(wexpol::AttemptsValueName(123, (std::wstring(76, L'x') + L"%02d").c_str()).size(), 79u);
  EXPECT_EQ(wexpol::AttemptsValueName(1234, (std::wstring(76, L'x') + L"%02d").c_str()), L"");
  EXPECT_EQ(wexpol::AttemptsValueName(4, nullptr), L"");
}

TEST(ServerEdition, FollowsFromTheVersion) {
  // Major, minor, suites, product type; whether it is a server.
  const std::pair<wexpol::WindowsVersion, bool> kCases[] = {
      {{10, 0, 0, 1}, false}, {{10, 0, 0, 3}, true},      {{10, 1, 0, 3}, false},
      {{6, 0, 0, 2}, true},   {{6, 3, 0x8000, 1}, false}, {{6, 3, 0, 3}, true},
      {{6, 4, 0, 3}, false},  {{5, 2, 0, 1}, false},      {{5, 2, 0, 3}, true},
      {{5, 2, 1, 1}, true},   {{5, 2, 0x8000, 1}, true},  {{5, 2, 0x7FFE, 1}, false},
      {{5, 1, 0, 3}, false},  {{11, 0, 0, 3}, false},     {{4, 0, 0, 3}, false},
  };
  for (const auto& [version, expected] : kCases) {
    EXPECT_EQ(wexpol::IsServerEdition(version), expected) << version.major << '.' << version.minor;
  }
}

using SubserviceVersionTest = PolicyTest;

constexpr wchar_t kUninstall[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

void Install(const wchar_t* entry, const wchar_t* name, const std::wstring& version,
             wexpol::RegistryView view) {
  CRegistryVeyra key;
  ASSERT_TRUE(key.OpenForWriting(std::wstring(kUninstall) + entry, view));
  EXPECT_TRUE(key.SetTextValue(L"DisplayName", name));
  EXPECT_TRUE(key.SetTextValue(L"DisplayVersion", version));
}

TEST_F(SubserviceVersionTest, VersionsReplaceThoseOfTheSameSubservice) {
  CDeviceSubserviceVersion version;
  EXPECT_FALSE(db().UpdateDeviceSubserviceVersion(&version, R"({"major":6})"));
  EXPECT_EQ(version.GetError(), R"({"desc": "json parsing error"})");
  EXPECT_TRUE(db().UpdateDeviceSubserviceVersion(
      &version, R"({"subservice_id":9,"device_id":7,"major":6,"out_of_date":true})"));
  EXPECT_EQ(version.GetError(), "");
  EXPECT_TRUE(db().UpdateDeviceSubserviceVersion(&version, R"({"subservice_id":9,"major":7})"));
  ASSERT_TRUE(db().GetDeviceSubserviceVersion(&version, 9));
  EXPECT_EQ(version.major, 7u);
  EXPECT_EQ(Row("SELECT group_concat(major) FROM device_subservice_versions"), "7");
  Sql("DROP TABLE device_subservice_versions");
  EXPECT_FALSE(db().UpdateDeviceSubserviceVersion(&version, R"({"device_id":7})"));
  EXPECT_EQ(version.GetError(),
            R"({"code": 1,"desc": "no such table: device_subservice_versions"})");
}

TEST_F(SubserviceVersionTest, ReportsTheDeviceThatThisIs) {
  CDeviceSubserviceVersion version;
  ASSERT_TRUE(ParseText(version, R"({"subservice_id":3,"major":1,"out_of_date":true,)"
                                 R"("version_date":"2024-06-10T06:13:20"})"));
  const std::string end = R"("major": 1,"version_date": "2024-06-10T06:13:20"})";
  EXPECT_EQ(Json(version), R"({"subservice_id": 3,)" + end);
  EXPECT_TRUE(CDeviceInfo::WriteDeviceID(610451));
  EXPECT_EQ(Json(version), R"({"subservice_id": 3,"device_id": 610451,)" + end);
}

TEST_F(SubserviceVersionTest, VersionFieldsAreSetInGroups) {
  CDeviceSubserviceVersion version(9, 6, 2, 4, 123);
  EXPECT_EQ(Json(version),
            R"({"subservice_id": 9,"major": 6,"minor": 2,"build": 4,"incremental": 123})");
  version.Set(10, 7, 8);
  version.Set(10, 7, 1, SYSTEMTIME{2023, 12, 0, 31, 23, 59, 58, 0});
  EXPECT_EQ(Json(version), R"({"subservice_id": 10,"major": 7,"minor": 1,"build": 4,)"
                           R"("incremental": 8,"version_date": "2023-12-31T23:59:58"})");
}

TEST_F(SubserviceVersionTest, TimeSinceAVersion) {
  CDeviceSubserviceVersion version;
  EXPECT_EQ(version.HowLongSinceLastUpdate(), 13354804800);  // From 1601 to the clock's noon.
  version.SetVersionDate({2024, 3, 0, 13, 11, 59, 0, 0});
  EXPECT_EQ(version.HowLongSinceLastUpdate(), 60);
  version.version_date.year = 2000;
  EXPECT_EQ(version.HowLongSinceLastUpdate(), 0);
  version.version_date.year = 2001;
  EXPECT_GT(version.HowLongSinceLastUpdate(), 0);
}

TEST_F(SubserviceVersionTest, InstalledBackupClients) {
  using wexpol::RegistryView;
  CDeviceSubserviceVersion version;
  EXPECT_EQ(CDeviceSubserviceVersion::GetInstalledOnlineBackupVersion(), "");
  Install(L"{A}", L"Another Product", L"1.1", RegistryView::k64Bit);
  Install(L"{B}", L"zentra corvane CLOUD backup", L"6.2.4.123", RegistryView::k32Bit);
  ASSERT_TRUE(version.LoadFromRegistry(SUBSERVICE_ID_CLOUD_BACKUP));
  EXPECT_EQ(Json(version),
            R"({"subservice_id": 9,"major": 6,"minor": 2,"build": 4,"incremental": 123})");
  EXPECT_EQ(CDeviceSubserviceVersion::GetInstalledOnlineBackupVersion(), "6.2.4.123");
  EXPECT_FALSE(version.LoadFromRegistry(SUBSERVICE_ID_SHADOW_BACKUP));
  EXPECT_FALSE(version.LoadFromRegistry(static_cast<SUBSERVICE_ID>(1)));
  const std::wstring longest = L"1.2" + std::wstring(29, L' '), too_long = longest + L' ';
  for (const auto& [text, expected] :
       {std::pair(L"6", "!6"), std::pair(L"6.", "6"), std::pair(L"7,5-6 beta", "7.5.6"),
        std::pair(L"1.2.3.4.5", "1.2.3.4"), std::pair(L"v1", "!6.2.4.123"),
        std::pair(L"0.99999999999", "0"), std::pair(longest.c_str(), "1.2"),
        std::pair(too_long.c_str(), "!6.2.4.123")}) {
    Install(L"ShadowProtect", L"x", text, RegistryView::k64Bit);
    const char* mark = version.LoadFromRegistry(SUBSERVICE_ID_SHADOW_BACKUP) ? "" : "!";
    EXPECT_EQ(mark + CDeviceSubserviceVersion::GetInstalledOnlineBackupVersion(), expected);
  }
}

TEST_F(SubserviceVersionTest, CopyOfAVersionInTheRegistry) {
  CDeviceSubserviceVersion version(9, 6, 2, 4, 123), read(1, 1, 1);
  version.SetVersionDate({2024, 5, 0, 11, 6, 13, 20, 0});
  EXPECT_FALSE(read.ReadFromRegistry(L"V"));
  EXPECT_TRUE(version.WriteToRegistry(L"V"));
  unsigned char bytes[36];
  EXPECT_TRUE(wexpol::ReadBinary(wexpol::AgentKey::kAgent, L"V", bytes, sizeof bytes));
  EXPECT_EQ(std::string(bytes, bytes + 4), std::string("\x09\0\0\0", 4));
  EXPECT_EQ(std::string(bytes + 28, bytes + 36), std::string("\xE8\x07\x05\x0B\x06\x0D\x14\0", 8));
  EXPECT_TRUE(read.ReadFromRegistry(L"V"));
  EXPECT_EQ(Json(read), Json(version));
  // Of a shorter value there is less to take; a longer one and one of another type are refused.
  EXPECT_TRUE(wexpol::WriteBinary(wexpol::AgentKey::kAgent, L"V", "\x01\0\0\0\x02", 5));
  EXPECT_TRUE(read.ReadFromRegistry(L"V"));
  EXPECT_EQ(read.subservice_id, 1);
  EXPECT_EQ(read.incremental, 123u);
  EXPECT_TRUE(wexpol::WriteBinary(wexpol::AgentKey::kAgent, L"V", std::string(37, 'x').data(), 37));
  EXPECT_FALSE(read.ReadFromRegistry(L"V"));
  EXPECT_TRUE(wexpol::WriteText(wexpol::AgentKey::kAgent, L"V", L"x"));
  EXPECT_FALSE(read.ReadFromRegistry(L"V"));
  EXPECT_EQ(read.subservice_id, 1);
}

}  // namespace
