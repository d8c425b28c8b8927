// Versions of sub-services: documents, the installed backup clients, the copy in the registry.

#include "tests/support/policy_test.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/device_info.h"

namespace {

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
  EXPECT_TRUE(db().UpdateDeviceSubserviceVersion(
      &version, R"({"subservice_id":9,"version_date":"on 2024/5/1 at 6:13","micro":12,)"
                R"("major":"6","minor":2.0,"build":-1,"out_of_date":1})"));
  ASSERT_TRUE(db().GetDeviceSubserviceVersion(&version, 9));
  EXPECT_EQ(Rows("SELECT * FROM device_subservice_versions"),
            std::vector<std::string>{"9|NULL|NULL|NULL|12|NULL|NULL|2024-05-01T06:13|0"});
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
