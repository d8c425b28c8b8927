// Time zones and time servers.

#include <algorithm>
#include <cstring>

#include "tests/support/policy_test.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/registry.h"

namespace {

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

class TimeInfoTest : public PolicyTest {};

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
