// Devices, interfaces and logins: their documents, special reads and writes.

#include "tests/support/policy_test.h"
#include "wexpol/platform/system_info.h"

namespace {

constexpr char kDevice[] =
    R"({"id":7,"account_id":1,"policy_id":2,"device_type_id":3,"operating_system_id":4,)"
    R"("device_status_id":5,"name":"PC"})";

class DeviceTest : public PolicyTest {
 protected:
  // Three devices of one LAN and one elsewhere; 12 is the local one, 11 the master.
  DeviceTest() {
    Sql(R"(INSERT INTO devices(id,name,token,wan_ip,is_master,allow_remote_connection,
             device_detection_enabled,device_group_id) VALUES
           (10,'Büro-1',NULL,'203.0.113.1',0,NULL,NULL,1),
           (11,'SRV',NULL,'203.0.113.1',1,0,0,1),
           (12,'PC','tok-12','203.0.113.1',0,1,1,2),
           (13,NULL,NULL,'203.0.113.9',1,2,2,9);
           INSERT INTO nics VALUES(1,10,x'0a0b0c0d0e0f','10.0.0.1',NULL),(2,12,x'010203',NULL,NULL),
             (3,12,x'665544332211','10.0.0.3','fe80::3'),(4,NULL,'text',NULL,NULL);
           INSERT INTO logins VALUES(1,10,'anna',7,NULL,NULL,0),
             (2,12,'O''Brien',NULL,NULL,NULL,1),(3,12,'ünal',8,NULL,NULL,NULL);
           INSERT INTO login_details VALUES(1,1,'firefox.exe','115'),(2,2,NULL,NULL);
           INSERT INTO device_groups VALUES(2,1,'Büro',1),(9,1,NULL,0))");
  }

  static std::string NicIds(const CDevice& device) {
    std::string ids;
    for (const CNic* nic : device.nics()) ids += std::to_string(nic->id) + ' ';
    return ids;
  }
};

TEST_F(DeviceTest, StrictParsingRequiresSevenKeysAndLenientOne) {
  CDevice device;
  EXPECT_TRUE(device.ParseJson(kDevice, true));
  for (const std::string key : {"id", "account_id", "policy_id", "device_type_id",
                                "operating_system_id", "device_status_id", "name"}) {
    std::string json = kDevice;
    json.replace(json.find('"' + key + '"') + 1, key.size(), "other");
    EXPECT_FALSE(device.ParseJson(json.c_str(), true)) << key;
    EXPECT_EQ(device.ParseJson(json.c_str(), false), key != "id") << key;
  }
  EXPECT_TRUE(device.ParseJson(R"({"id":7})", false));
  EXPECT_EQ(Json(device), R"({"id": 7})");  // Nothing of the earlier document is left.
  EXPECT_TRUE(device.ParseJsonForId(R"({"name":5,"id":21})"));
  for (const char* json : {R"({"id":"22"})", R"({"id":22.0})", "{}", "[22]", "{"}) {
    EXPECT_FALSE(device.ParseJsonForId(json));
  }
  EXPECT_EQ(device.id, 21);
}

TEST_F(DeviceTest, NestedInterfacesAreKeptButForBadOnes) {
  CDevice device;
  ASSERT_TRUE(device.ParseJson(
      R"({"id":7,"nics":[{"id":1,"mac":"0A0b0C0d0E0f"},{"id":2,"mac":"0a0b0c0d0e0"},
          {"id":3,"mac":"0a0b0c0d0e0f0"},5,{"mac":"0a0b0c0d0e0f"},{"id":6}]})",
      false));
  std::string json;
  device.GenerateJson(json, &device.nics());
  EXPECT_EQ(json, R"({"id": 7,"nics": [{"id": 1,"mac": "0a0b0c0d0e0f"},)"
                  R"({"id": 6,"mac": "000000000000"}]})");
  const CDevice copy = device;
  RecordList<CNic> taken;
  device.MoveNics(taken.list);
  EXPECT_EQ(taken.list.size(), 2u);
  EXPECT_EQ(NicIds(device) + '|' + NicIds(copy), "|1 6 ");
  device = copy;
  EXPECT_TRUE(device.ParseJson(kDevice, true));
  EXPECT_EQ(NicIds(device), "");
}

TEST_F(DeviceTest, ReadsADeviceWithInterfaces) {
  CDevice device, self;
  EXPECT_TRUE(db().GetDevice(&device, 12));
  EXPECT_EQ(Json(*device.nics().front()), R"({"id": 2,"device_id": 12,"mac": "010203000000"})");
  EXPECT_FALSE(db().GetDevice(&device, 99));
  EXPECT_EQ(NicIds(device), "2 3 ");  // A read that finds nothing leaves the record.
  Sql("ALTER TABLE nics RENAME TO whole; CREATE VIEW nics AS SELECT id,device_id,mac,ipv4,"
      "CASE id WHEN 3 THEN abs(-9223372036854775807-1) END AS ipv6 FROM whole");
  EXPECT_FALSE(db().GetDevice(&device, 12));  // Its second interface cannot be read.
  EXPECT_EQ(NicIds(device), "2 3 ");
  Sql("DROP VIEW nics; ALTER TABLE whole RENAME TO nics");
  EXPECT_TRUE(db().GetDevice(&device, -1));
  EXPECT_EQ(std::to_string(device.id) + NicIds(device), "12");  // -1 has no interfaces.

  EXPECT_TRUE(db().GetMasterAgentForThisLAN(device, self));
  EXPECT_EQ(self.id, 12);
  EXPECT_EQ(std::to_string(device.id) + ' ' + NicIds(device), "11 2 3 ");  // Those of the asking.
  Sql("UPDATE devices SET is_master=2 WHERE id=11");
  EXPECT_FALSE(db().GetMasterAgentForThisLAN(device, self));
}

TEST_F(DeviceTest, TokensOfOneOrTheFirstDevice) {
  Sql("UPDATE devices SET token='' WHERE id=10");
  std::string tokens;
  for (const long id : {12, 10, 13, 99, 0}) {  // 0 asks for the first row's.
    std::string narrow = "none";
    wchar_t* wide;
    EXPECT_EQ(CDevice::GetToken(narrow, handle(), id), CDevice::GetToken(&wide, handle(), id));
    EXPECT_EQ(wide ? wexpol::WideToUtf8(wide) : "none", narrow);
    delete[] wide;
    tokens += narrow + ' ';
  }
  EXPECT_EQ(tokens, "tok-12  none none  ");
}

TEST_F(DeviceTest, FlagsDifferInWhatTheyAssume) {
  const std::pair<long, const char*> cases[] = {// NULL, 0, 1, 2, no row.
                                                {10, "0 1 0"},
                                                {11, "0 0 0"},
                                                {12, "1 1 1"},
                                                {13, "1 1 0"},
                                                {99, "0 1 0"}};
  for (const auto& [id, answers] : cases) {
    CDeviceInfo::WriteDeviceID(id);
    EXPECT_EQ(
        Join(CDevice::IsVncConnectionAllowed(handle(), id),
             CDevice::IsDeviceDetectionEnabled(handle(), id), db().IsDeviceDetectionEnabled()),
        answers);
  }
}

TEST_F(DeviceTest, NamesAndTextFields) {
  CDevice device, other;
  EXPECT_TRUE(device == other);
  device.SetName(L"");  // An empty name is a name.
  EXPECT_EQ(Join(device == other, other == device), "0 0");
  other.SetName(L"pC-Ü");
  device.SetName(L"Pc-Ü");
  EXPECT_TRUE(device == other);
  std::wstring wide;
  std::string narrow;
  char buffer[6] = "#";
  EXPECT_EQ(Join(device.GetNameW(wide), device.GetNameA(narrow)), "1 1");
  EXPECT_EQ(wexpol::WideToUtf8(wide) + narrow, "Pc-ÜPc-Ü");
  for (const int size : {5, -1, 6}) EXPECT_EQ(device.GetNameA(buffer, size), size == 6) << buffer;
  EXPECT_EQ(buffer, narrow);
  device.FreeName();
  EXPECT_EQ(Join(device.GetNameW(wide), device.GetNameA(narrow), device.GetNameA(buffer, 6)),
            "0 0 0");
  EXPECT_TRUE(device.SetName());
  EXPECT_TRUE(device.GetNameW(wide));
  EXPECT_EQ(wide, wexpol::ComputerDnsHostName());
  device.SetDomain("bü.example");
  EXPECT_STREQ(device.domain, L"bü.example");
}

TEST_F(DeviceTest, AddsUpdatesAndDeletesSingleRows) {
  CDevice device;
  for (const bool added : {true, false}) EXPECT_EQ(db().AddDevice(&device, kDevice), added);
  EXPECT_EQ(db().GetError(), R"({"code": 19,"desc": "UNIQUE constraint failed: devices.id"})");
  for (const char* json : {"[]", R"({"id":8,"name":"x"})", "{"}) {
    EXPECT_FALSE(db().AddDevice(&device, json)) << json;
    EXPECT_EQ(db().GetError(), R"({"desc": "json parsing error"})");
  }
  const std::string renamed =
      std::string(kDevice).replace(std::string(kDevice).find("PC"), 2, "NB");
  EXPECT_TRUE(db().UpdateDevices(("[" + renamed + "]").c_str()));
  EXPECT_TRUE(db().UpdateDevices("[]"));
  for (const char* json : {"5", "", R"({"device":{"id":1}})", R"([{"id":7}])"}) {
    EXPECT_FALSE(db().UpdateDevices(json)) << json;
    EXPECT_EQ(db().GetError(), R"({"desc": "Error parsing json"})");
  }
  // The rows before the first failure are written, those after are not.
  EXPECT_FALSE(db().UpdateNics(R"([{"id":1,"mac":"000000000001"},{"id":2,"mac":"00"},{"id":3}])"));
  EXPECT_EQ(Row("SELECT name,(SELECT group_concat(hex(mac)) FROM nics) FROM devices WHERE id=7"),
            "NB|000000000001,010203,665544332211,74657874");
  CNic nic;
  device.id = 7;
  nic.id = 2;
  EXPECT_TRUE(db().DeleteDevice(&device));
  EXPECT_TRUE(db().DeleteNic(&nic));
  EXPECT_EQ(Join(db().DeleteDevice(nullptr), db().DeleteNic(nullptr)), "0 0");
  EXPECT_EQ(CNic::DelFromDB(handle(), 12), SQLITE_DONE);
  EXPECT_EQ(Row("SELECT max(id),(SELECT group_concat(id) FROM nics) FROM devices"), "13|1,4");
  Sql("CREATE TRIGGER refuse BEFORE UPDATE ON nics BEGIN SELECT RAISE(ABORT,'refused'); END");
  EXPECT_FALSE(db().UpdateNics(R"({"id":1})"));
  EXPECT_EQ(db().GetError(), R"({"code": 19,"desc": "refused"})");
}

TEST_F(DeviceTest, StatusAndGroupOfTheLocalDevice) {
  EXPECT_TRUE(db().SetDeviceStatus(0, 4));
  EXPECT_TRUE(db().SetDeviceStatus(11, -1));
  EXPECT_EQ(Row("SELECT group_concat(ifnull(device_status_id,'-')) FROM devices"), "-,-1,4,-");
  std::wstring name;
  // Of 10 there is no group, that of 13 has no name.
  for (const auto& [id, group] : {std::pair(12L, L"Büro"), {10L, L"Büro"}, {13L, L""}}) {
    CDeviceInfo::WriteDeviceID(id);
    EXPECT_EQ(db().GetDeviceGroupName(name), id != 10);
    EXPECT_EQ(name, group);
  }
  CDeviceInfo::WriteDeviceID(0L);
  EXPECT_FALSE(db().SetDeviceStatus(0, 5));
}

TEST_F(DeviceTest, InterfacesByTheirAddress) {
  const unsigned char known[] = {0x66, 0x55, 0x44, 0x33, 0x22, 0x11}, unknown[6] = {};
  const unsigned char* none = nullptr;
  EXPECT_EQ(Json(CNic(known, "a", "b")), R"({"mac": "665544332211","ipv4": "a","ipv6": "b"})");
  EXPECT_EQ(Json(CNic(none)), R"({"mac": "000000000000"})");
  const std::pair<const wchar_t*, const char*> macs[] = {
      {L"01-02:03xFa.fB fc", "010203fafbfc"},
      {L"01-02-03-04-05-0", "000000000000"},
      {L"01-02-03-04-05-067", "000000000000"},
      {L"g1-1g-03-04-05-\u20ac6", "000103040500"}};
  for (const auto& [text, mac] : macs) EXPECT_EQ(Json(CNic(text)).substr(9, 12), mac);
  CNic nic;
  for (const auto* mac : {known, unknown, none}) EXPECT_EQ(db().GetNic(&nic, mac), mac == known);
  EXPECT_EQ(nic.id, 3);
  // For no address the first row's.
  EXPECT_EQ(Join(db().GetDeviceID(known), db().GetDeviceID(unknown), db().GetDeviceID(none)),
            "12 -1 10");
  EXPECT_EQ(Join(db().DoesMacAddrExist(known, 0), db().DoesMacAddrExist(known, 12),
                 db().DoesMacAddrExist(known, 10), db().DoesMacAddrExist(none, 0)),
            "1 1 0 0");
}

TEST_F(DeviceTest, LoginsOfTheLocalDevice) {
  EXPECT_EQ(db().GetLoginId(L"O'Brien"), 2);
  EXPECT_EQ(db().GetLoginId(L"ünal"), 3);
  for (const wchar_t* name : {L"anna", L"o'brien", L"' OR 1=1 --", L"", L"%s%n", L"\xD800"}) {
    EXPECT_EQ(db().GetLoginId(name), -1);
  }
  EXPECT_EQ(Join(CLogin::GetPolicyId(handle(), 1), CLogin::GetPolicyId(handle(), 2),
                 CLogin::GetPolicyId(handle(), 99)),
            "7 -1 -1");
  CLogin login;
  EXPECT_TRUE(db().GetLogin(login, 3));
  EXPECT_FALSE(db().GetLogin(login, 99));
  EXPECT_EQ(Json(login),
            R"({"id": 3,"device_id": 12,"name": "ünal","policy_id": 8,"is_admin": true})");
}

TEST_F(DeviceTest, TextsThatAStatementHasNoRoomFor) {
  CLogin login;
  CLoginDetail detail;
  const auto rename = [&](std::size_t bytes) {
    login.id = 1;
    login.SetName((std::wstring(bytes % 2, L'x') + std::wstring(bytes / 2, L'ü')).c_str());
    EXPECT_EQ(login.UpdateDB(handle()), SQLITE_DONE);
    return std::wstring(login.name);
  };
  EXPECT_TRUE(login.GetLogin(handle(), 10, rename(460).c_str()));
  EXPECT_FALSE(login.GetLogin(handle(), 10, rename(461).c_str()));
  EXPECT_TRUE(detail.GetBrowserName(0, rename(339).c_str(), handle()));
  EXPECT_FALSE(detail.GetBrowserName(0, rename(340).c_str(), handle()));
  EXPECT_EQ(Json(detail), "{}");  // The record is emptied all the same.
  const std::string browser(465, 'b');
  EXPECT_TRUE(CLoginDetail::UpdateLoginDetails(handle(), 1, browser.c_str()));
  EXPECT_FALSE(CLoginDetail::UpdateLoginDetails(handle(), 10, browser.c_str()));
}

TEST_F(DeviceTest, DefaultBrowserOfALogin) {
  // "anna" is a login of another device.
  for (const char* path : {"C:\\Programs\\FIREFOX.exe", "firefox.exe"}) {
    EXPECT_TRUE(db().CheckLoginDetails(L"anna", path)) << path;
  }
  for (const char* path :
       {"C:/firefox.exe", "firefox.exe\\", "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(db().CheckLoginDetails(L"anna", path));
  }
  EXPECT_FALSE(db().CheckLoginDetails(L"O'Brien", ""));  // None is known.
  CLoginDetail detail;
  detail.id = 1;
  for (const std::string& name :
       {std::string(259, 'c'), std::string(260, 'c'), std::string("';DELETE FROM logins --")}) {
    detail.SetBrowser(name.c_str());
    EXPECT_TRUE(db().UpdateLoginDetails(&detail));
    EXPECT_EQ(db().CheckLoginDetails(L"anna", ("\\" + name).c_str()), name.size() < 260);
  }
  CDeviceInfo::WriteDeviceID(0L);
  EXPECT_FALSE(db().CheckLoginDetails(L"anna", detail.browser));
}

}  // namespace
