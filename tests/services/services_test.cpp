// Services: the questions about the local device, automatic upgrades, the installer's options, the
// attempt counters, and which Windows is a server.

#include "tests/support/policy_test.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/device_info.h"
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
  Sql("DROP TABLE device_services");
  EXPECT_EQ(Answers(), "|||||||||");
}

TEST_F(ServicesTest, WithoutALocalDeviceEverythingIsFalse) {
  Sql("UPDATE devices SET token=NULL");
  EXPECT_EQ(Answers(), "|||||||||");
  CAvComponents components;
  EXPECT_FALSE(db().GetAvComponents(components));
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

}  // namespace
