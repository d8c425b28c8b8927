// Which device this is, and the credentials of its requests.

#include <functional>

#include "tests/support/policy_test.h"
#include "wexpol/identity/machine_id.h"
#include "wexpol/platform/registry.h"

namespace {

using std::string_literals::operator""s;

class LocalDeviceTest : public PolicyTest {
 protected:
  LocalDeviceTest() {
    Sql(R"(INSERT INTO accounts VALUES(48,1033,1,1);
           INSERT INTO devices(id,token,ccl_id) VALUES(5,NULL,NULL),
             (6,'tok-6','abc def ghi'),(7,'tok-7','x'),(1,'tok-1',NULL);
           INSERT INTO nics VALUES(1,6,x'01',NULL,NULL);
           INSERT INTO service_configurations(service_id,key,value)
             VALUES(3,'policy_api_url','https://console/api');
           INSERT INTO install_invites(id,token) VALUES(1,'invited'))");
  }

  static long Stored() {
    long id = -1;
    CDeviceInfo::GetDeviceID(&id);
    return id;
  }
  static std::wstring Header(CAuthInfo& info) {
    std::wstring line = L"untouched";
    return info.BuildHttpHeader(line) ? line : L"no: " + line;
  }
};

TEST_F(LocalDeviceTest, FallsBackToTheRowWithATokenAndStoresItsId) {
  // The stored id, the row that is found, and the id afterwards; -1 is none.
  const long cases[][3] = {{-1, 6, 6}, {7, 7, 7}, {1, 1, 1}, {9, -1, 9}, {0, -1, 0}, {-5, -1, -5}};
  for (const auto& [stored, row, known] : cases) {
    CDevice device;
    CDeviceInfo::WriteDeviceID(stored);
    EXPECT_EQ(db().GetThisDevice(device), row != -1) << stored;
    EXPECT_EQ(Join(device.id, device.nics().size(), Stored()), Join(row, row == 6, known));
    long id = 99;
    CDeviceInfo::WriteDeviceID(stored);
    EXPECT_TRUE(db().GetThisDeviceId(id)) << stored;
    EXPECT_EQ(Join(id, Stored()), Join(known, known));
  }
  for (const char* change : {"UPDATE devices SET id=0 WHERE id=6", "DELETE FROM devices"}) {
    Sql(change);  // The first with a token has no id that counts; then there is none.
    CDeviceInfo::WriteDeviceID(-1L);
    long id = 99;
    EXPECT_FALSE(db().GetThisDeviceId(id));
    EXPECT_EQ(id, -1);
  }
  EXPECT_EQ(Stored(), -1);
  Sql("INSERT INTO devices(id,token) VALUES(1,'t')");
  long id = 99;
  EXPECT_TRUE(db().GetThisDeviceId(id));
  EXPECT_EQ(Join(id, Stored()), "1 1");
  std::uint32_t bits = 0;
  EXPECT_TRUE(wexpol::ReadDword(wexpol::AgentKey::kAgent, L"DID", &bits));
  EXPECT_EQ(bits, 1u);
}

TEST_F(LocalDeviceTest, CredentialsOfARequest) {
  constexpr wchar_t kNobody[] = L"no: X-Api-Token: nobody";
  const std::tuple<const char*, long, bool, const wchar_t*> cases[] = {
      {"", 0, false, L"X-Device-Token: tok-6"},
      {"", 7, true, L"X-Device-Token: tok-7"},
      {"", 1, true, L"X-Device-Token: tok-1"},
      {"", 5, false, L"X-Device-Token: tok-6"},  // After two failures, the local device's.
      {"UPDATE devices SET token=''", 7, false, L"X-Device-Token: "},
      {"", 7, true, L"X-Invite-Token: invited"},
      {"UPDATE install_invites SET token=''", 7, true, L"X-Invite-Token: "},
      {"UPDATE install_invites SET token='ünïque'", 7, true, L"X-Invite-Token: ünïque"},
      {"UPDATE install_invites SET token='a'||char(10)||'b'", 7, true, kNobody},
      {"UPDATE install_invites SET token=NULL", 7, true, kNobody},
      {"UPDATE devices SET token='a'||char(13)||'b'", 7, false, kNobody},
      {"DELETE FROM devices", 7, false, kNobody},
  };
  CDeviceInfo::WriteDeviceID(-5L);  // As good as none.
  for (const auto& [sql, device, allow_invite, header] : cases) {
    Sql(sql);
    CAuthInfo info;
    EXPECT_EQ(db().GetAuthInfo(info, true, device, allow_invite), header != kNobody) << sql;
    EXPECT_EQ(Header(info), header);
    EXPECT_EQ(info.account_id, 48);
    EXPECT_STREQ(info.policy_api_url, L"https://console/api");
    EXPECT_EQ(Stored(), 6);
  }
}

TEST_F(LocalDeviceTest, AGivenDeviceKeepsTheStoredIdOut) {
  CAuthInfo info;
  // The stored id, the one that is given, and that which is used.
  for (const auto& [stored, given, used] : {std::tuple(6, 7, 7), {6, 5, 6}, {7, 0, 7}, {7, 5, 7}}) {
    CDeviceInfo::WriteDeviceID(stored);
    EXPECT_TRUE(db().GetAuthInfo(info, true, given, false));
    EXPECT_EQ(info.device_id, used);
  }
  Sql("UPDATE accounts SET account_status_id=2; DELETE FROM service_configurations");
  EXPECT_FALSE(db().GetAuthInfo(info, true, 7, true));
  EXPECT_TRUE(db().GetAuthInfo(info, false, 7, true));
  EXPECT_TRUE(info.account_disabled);
  EXPECT_EQ(info.policy_api_url, nullptr);
  Sql("ALTER TABLE accounts RENAME TO elsewhere");  // It might be disabled.
  EXPECT_FALSE(db().GetAuthInfo(info, false, 7, true));
  EXPECT_EQ(Header(info), L"no: X-Api-Token: nobody");
  const std::string log = ReadBytes(CFilePaths::GetLocationLogFile());
  const auto failed = log.find("> CServiceConfiguration::GetServiceConfiguration failed");
  EXPECT_LT(log.find("> CDevice::GetToken DeviceId = 7"), failed);
  EXPECT_NE(failed, log.npos);
  EXPECT_EQ(log.find("tok-"), log.npos);
}

// What another connection does to the tables while credentials are read.
struct Interference {
  std::string at;  // Before the statement with this text, once.
  std::function<void()> act;

  static int OnStatement(unsigned, void* self, void*, void* text) {
    auto& there = *static_cast<Interference*>(self);
    if (std::string(static_cast<const char*>(text)).find(there.at) != std::string::npos) {
      if (const auto act = std::exchange(there.act, nullptr)) act();
    }
    return 0;
  }
};

TEST_F(LocalDeviceTest, SeesOneStateOfTheTablesUntilItTriesAgain) {
  wexpol::WideText url;
  const auto replace = [&] { EXPECT_TRUE(db().ClearAndAddDevices(R"({"id":6,"token":"new"})")); };
  const auto header = [&](const char* before, std::function<void()> act) {
    Interference other{before, std::move(act)};
    sqlite3_trace_v2(handle(), SQLITE_TRACE_STMT, &Interference::OnStatement, &other);
    CAuthInfo info;
    EXPECT_TRUE(info.Read(handle(), true, 6, false));
    sqlite3_trace_v2(handle(), 0, nullptr, nullptr);
    url = info.policy_api_url;
    return Header(info);
  };
  EXPECT_EQ(header("service_configurations", replace), L"X-Device-Token: tok-6");
  EXPECT_EQ(header("none", nullptr), L"X-Device-Token: new");
  Sql("DELETE FROM devices");
  EXPECT_EQ(header("SELECT token FROM devices", replace), L"X-Device-Token: new");
  Sql("DELETE FROM service_configurations");  // The address is tried twice as well.
  header("service_configurations", [&] {
    EXPECT_TRUE(db().AddServiceConfigurations(R"({"id":1,"key":"policy_api_url","value":"late"})"));
  });
  EXPECT_EQ(url.view(), L"late");
}

TEST_F(LocalDeviceTest, TokenAloneAndInAnAddress) {
  struct Session : CPolicyDB {
    using CPolicyDB::AddUserInfoToUrl;
    using CPolicyDB::GetPolicyIdFromDeviceId;
  };
  Sql("DELETE FROM devices WHERE id=5; UPDATE devices SET policy_id=70 WHERE id<7");
  std::string token, url = "http://x/f";
  const std::tuple<long, bool, long> cases[] = {
      {-1, true, 70}, {1, true, 70}, {7, true, -1}, {0, false, -1}, {99, false, -1}};
  for (const auto& [id, known, policy] : cases) {
    CDeviceInfo::WriteDeviceID(id);
    EXPECT_EQ((db().*&Session::AddUserInfoToUrl)(url), known) << id;
    EXPECT_EQ(db().GetDeviceToken(token), known) << id;
    EXPECT_EQ((db().*&Session::GetPolicyIdFromDeviceId)(), policy) << id;
  }
  EXPECT_EQ(token + ' ' + url, "tok-7 http://x/f?dt=tok-6?dt=tok-1?dt=tok-7");
}

// The key name comes from the time of the installation.
constexpr std::uint32_t kInstallDate = 1710331200;
constexpr wchar_t kSystemKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr wchar_t kIdKey[] = L"SOFTWARE\\Classes\\CLSID\\{3DDFC3B1-613B-7AE0-FDFA-B00B35782DF3} ";

class MachineIdTest : public LocalDeviceTest {
 protected:
  MachineIdTest() {
    EXPECT_TRUE(key_.OpenForWriting(kSystemKey, wexpol::RegistryView::kProcess));
    EXPECT_TRUE(key_.SetDWORDValue(L"InstallDate", kInstallDate));
    EXPECT_TRUE(key_.OpenForWriting(kIdKey, wexpol::RegistryView::kProcess));
  }
  std::string Generated() {
    CDevice device;
    return device.GenerateCclId() ? device.ccl_id.get() : "none";
  }
  CRegistryVeyra key_;
};

TEST_F(MachineIdTest, IsMadeOnceAndKept) {
  const std::string made = Generated();
  EXPECT_EQ(made.find_first_not_of("0123456789abcdef"), 32u) << made;
  EXPECT_EQ(made.find_first_not_of("0123456789abcdef", 33), made.npos);
  EXPECT_EQ((made.size() - 33) % 40, 0u) << made;  // There may be no firmware.
  EXPECT_EQ(Generated(), made);
  // What cannot be an id is replaced: nothing, more than 32 bytes, another type.
  for (const std::wstring& text : {L""s, std::wstring(33, L'a'), std::wstring(17, L'ü')}) {
    EXPECT_TRUE(key_.SetTextValue(L"data", text));
    EXPECT_EQ(Generated().size(), made.size());
  }
  EXPECT_TRUE(key_.SetDWORDValue(L"data", 7));
  EXPECT_EQ(Generated().size(), made.size());
  EXPECT_TRUE(key_.OpenForWriting(kSystemKey, wexpol::RegistryView::kProcess));
  EXPECT_TRUE(key_.SetDWORDValue(L"InstallDate", 0));
  EXPECT_EQ(Generated(), "none");
}

TEST_F(MachineIdTest, IsRestoredFromTheConsole) {
  // A machine id without a blank is not stored; for a device that is not known, the local one is.
  const std::pair<long, long> steps[] = {{6, 6}, {7, 7}, {99, 7}};
  for (const auto& [id, stored] : steps) {
    EXPECT_TRUE(db().WriteDeviceIdToRegistry(id));
    EXPECT_EQ(Stored(), stored);
    EXPECT_EQ(Generated().substr(0, 4), "abc ");
    EXPECT_EQ(Generated().rfind(' '), 3u);
  }
  Sql("DELETE FROM devices");
  EXPECT_FALSE(db().WriteDeviceIdToRegistry(99));
  EXPECT_FALSE(CDevice().WriteCclIdToRegistry());
}

TEST(MachineIdWordsTest, FollowTheirFormulas) {
  wexpol::SystemUuid uuid;
  for (std::uint8_t i = 0; i < 16; ++i) uuid[i] = i;
  EXPECT_EQ(wexpol::HardwareId(uuid), "82c390d991341c3308bf0b6ae09b454f00da113d");
  EXPECT_EQ(wexpol::InstallationKeyPath(kInstallDate), kIdKey);
}

// A vector of exactly these bytes lets the sanitizer see a read past its end.
std::optional<wexpol::SystemUuid> Find(const std::string& bytes) {
  const std::vector<std::uint8_t> table(bytes.begin(), bytes.end());
  return wexpol::FindSystemUuid(table.data(), table.size());
}

TEST(SmbiosWalkTest, FindsTheIdOfAWholeRecord) {
  const std::string bios = "\0\x06\0\0ab"s + "vendor\0version\0\0"s, board = "\2\4\0\0\0\0"s;
  const std::string system = "\1\x1B\0\0test"s + "0123456789abcdef" + "\6\0\0"s;
  for (const std::string& before : {""s, bios, bios + board, board + board}) {
    const std::string table = before + system + "\0\0"s;
    for (std::size_t size = 0; size <= table.size(); ++size) {
      const auto uuid = Find(table.substr(0, size));
      EXPECT_EQ(uuid ? std::string(uuid->begin(), uuid->end()) : "",
                size < before.size() + 27 ? "" : "0123456789abcdef");
    }
    for (const char* length : {"\0", "\3", "\x8", "\x17"}) {  // It ends before the UUID does.
      EXPECT_FALSE(Find(std::string(table).replace(before.size() + 1, 1, length, 1)));
    }
  }
}

}  // namespace
