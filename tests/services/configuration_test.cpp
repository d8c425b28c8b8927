// Configuration values: the three forms of the lookup, and writing them.

#include "tests/support/policy_test.h"

namespace {

class ConfigurationTest : public PolicyTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(db().AddServiceConfigurations(
        R"({"service_configurations":[
          {"id":1,"service_id":2,"key":"url","value":"two","is_url":true,"row_version":9},
          {"id":2,"service_id":3,"key":"url","value":"three","is_url":1},
          {"id":3,"service_id":null,"key":"none","value":"x"},
          {"id":4,"service_id":4,"key":"null","value":null}]})"))
        << db().GetError();
  }

  std::string Text(const char* key, short service_id) {
    std::string value = "unchanged";
    const bool found = db().GetServiceConfiguration(value, key, service_id);
    EXPECT_EQ(found, value != "unchanged");
    return value;
  }
};

TEST_F(ConfigurationTest, LookupsByKeyAndService) {
  Sql("INSERT INTO service_configurations(key,value,service_id) VALUES('url','minus',-1)");
  const std::tuple<const char*, int, const char*> cases[] = {{"url", 2, "two"},
                                                             {"url", 3, "three"},
                                                             {"url", -1, "unchanged"},
                                                             {"url", -2, "unchanged"},
                                                             {"url", 0, "unchanged"},
                                                             {"url", 4, "unchanged"},
                                                             {"none", -1, "unchanged"},
                                                             {"null", 4, "unchanged"},
                                                             {"URL", 2, "unchanged"},
                                                             {nullptr, 2, "unchanged"},
                                                             {"x' OR '1'='1", 2, "unchanged"}};
  for (const auto& [key, service_id, expected] : cases) {
    EXPECT_EQ(Text(key, static_cast<short>(service_id)), expected) << service_id;
  }
  for (const auto& [key, expected] : {std::pair("url", "two"), std::pair("none", "x")}) {
    const std::unique_ptr<char[]> value(
        CServiceConfiguration::GetServiceConfiguration(handle(), key));
    EXPECT_STREQ(value.get(), expected);
  }
  for (const char* key : {"null", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(CServiceConfiguration::GetServiceConfiguration(handle(), key, 4), nullptr);
  }
}

TEST_F(ConfigurationTest, DownloadAddressIsTheAntivirusSettings) {
  Sql("INSERT INTO service_configurations(key,value,service_id) "
      "VALUES('nxb_av_download_url','n',2)");
  EXPECT_EQ(Text("NXB_AV_Download_URL", 2), "unchanged");
  Sql("INSERT INTO nxb_av_settings(id,download_url) VALUES(1,'https://a/')");
  EXPECT_EQ(Text("NXB_AV_Download_URL", 2), "https://a/");
}

TEST_F(ConfigurationTest, SetReplacesTheValueOrAddsARow) {
  const std::string longest(78, 'k'), never_found(79, 'k');
  const std::tuple<const char*, std::string, bool, int> cases[] = {
      {"new", "url", false, 3},     {nullptr, "url", false, 3},    {"first", "url", false, 0},
      {"it's; --", "a'b", true, 5}, {nullptr, longest, false, -1}, {"v", never_found, false, 5},
      {"w", never_found, false, 5}};
  for (const auto& [value, key, is_url, service_id] : cases) {
    EXPECT_TRUE(db().SetServiceConfigurationRaw(value, key.c_str(), is_url,
                                                static_cast<short>(service_id)));
  }
  EXPECT_FALSE(db().SetServiceConfigurationRaw("v", nullptr, 0, 5));
  EXPECT_EQ(Rows("SELECT * FROM service_configurations"),
            (std::vector<std::string>{
                "1|2|url|first|1|9", "2|3|url|new|1|NULL", "3|NULL|none|x|NULL|NULL",
                "4|4|null|NULL|NULL|NULL", "5|5|a'b|it's; --|1|NULL",
                "6|NULL|" + longest + "|NULL|0|NULL", "7|5|" + never_found + "|v|0|NULL",
                "8|5|" + never_found + "|w|0|NULL"}));
  RecordList<CServiceConfiguration> all;
  EXPECT_TRUE(db().GetAllServiceConfigurations(all.list));
  EXPECT_EQ(all.list.size(), 8u);
  CServiceConfiguration record;
  EXPECT_FALSE(record.GetRecord(handle(), "url", 7));
  ASSERT_TRUE(record.GetRecord(handle(), "url", 3));
  EXPECT_TRUE(record.SetServiceConfiguration(handle(), record.key, record.value, 1, 9));
  EXPECT_EQ(Row("SELECT value FROM service_configurations WHERE key='new'"), "url");
  record.SetKey(L"kéy");
  record.SetValue(static_cast<const wchar_t*>(nullptr));
  EXPECT_EQ(Json(record), R"({"service_id": 9,"key": "kéy","is_url": true})");
}

TEST_F(ConfigurationTest, FlowSwitch) {
  for (const std::string value : {"true", "TRUE", "1", "yes", ""}) {
    ASSERT_TRUE(db().SetServiceConfigurationRaw(value.c_str(), "sb_flow_enabled", 0, 4));
    EXPECT_EQ(db().IsServiceBridgeInstallFlowEnabled(4), value.size() == 4) << value;
  }
  wexpol::ResetLogForTesting();
  for (short id = -2; id <= 14; ++id) {
    const bool switched = std::set<short>{0, 1, 2, 4, 5, 9, 12}.count(id) > 0;
    EXPECT_EQ(db().IsServiceBridgeInstallFlowEnabled(id), !switched) << id;
  }
  const std::string log = ReadBytes(CFilePaths::GetLocationLogFile());
  EXPECT_NE(log.find("sb_flow_enabled is not set for service 12"), std::string::npos) << log;
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 7);  // With the first line of the file.
}

TEST_F(ConfigurationTest, GlobalValues) {
  ASSERT_TRUE(
      db().AddGlobalConfigurations(R"([{"id":1,"value":"\u540d\r\n"},{"id":32767,"value":null}])"));
  std::wstring value = L"unchanged";
  EXPECT_FALSE(db().GetGlobalConfiguration(value, 2));
  EXPECT_FALSE(db().GetGlobalConfiguration(value, 32767));
  EXPECT_EQ(value, L"unchanged");
  EXPECT_TRUE(db().GetGlobalConfiguration(value, 1));
  EXPECT_EQ(value, L"名\r\n");

  CGlobalConfiguration record(32767, L"→");
  EXPECT_TRUE(db().SetGlobalConfiguration(record));
  EXPECT_TRUE(CGlobalConfiguration::SetGlobalConfiguration(handle(), 3, L"3"));
  record = CGlobalConfiguration(1, static_cast<const char*>(nullptr));
  EXPECT_FALSE(db().SetGlobalConfiguration(record));  // Nothing to set.
  EXPECT_TRUE(record.GetRecord(handle(), 3));
  EXPECT_EQ(Rows("SELECT * FROM global_configurations WHERE id>1"),
            (std::vector<std::string>{"3|3", "32767|→"}));
}

}  // namespace
