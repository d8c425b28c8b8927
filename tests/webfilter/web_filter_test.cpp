// The web filter: where its tables differ from the others, and its questions.

#include "tests/support/policy_test.h"

namespace {

using Lines = std::vector<std::string>;

using WebFilterTest = PolicyTest;

TEST_F(WebFilterTest, AScheduleIsReadWholeOrNotAtAll) {
  const std::string zeros(166, '0');
  Sql("INSERT INTO filter_settings(id,schedule) VALUES(1,x'" + zeros + "af'),(2,NULL),(3,x'" +
      zeros + "01'),(4,x'ff'),(5,x'ff00" + zeros + "'),(6,'text')");
  RecordList<CFilterSetting> settings;
  EXPECT_TRUE(db().GetFilterSettings(settings.list, nullptr, 0));
  std::string ends;
  for (const CFilterSetting* setting : settings.list) {
    ends += std::to_string(setting->schedule.front() + setting->schedule.back()) + ' ';
  }
  EXPECT_EQ(ends, "175 0 1 0 0 0 ");
}

TEST_F(WebFilterTest, CategoryQuestions) {
  Sql("INSERT INTO categories(id,name,category_type_id,is_pornography,client_should_cache) VALUES"
      "(1,'one',1,0,1),(300,'two',2,NULL,0),(NULL,'five',5,7,0),(4,'six',6,1,NULL),"
      "(-2,'none',NULL,NULL,0),(6,'wide',65538,0,1),(7,'',3,1,1),(8,'Zoë',4,1,1)");
  // Whether one of the names is of movies, or of pornography. Types have 16 bits; an empty name is
  // none, although a category has it.
  const std::pair<std::set<std::wstring>, const char*> kCases[] = {
      {{}, "0 0"},
      {{L"one"}, "0 0"},
      {{L"six"}, "0 1"},
      {{L"two"}, "1 0"},
      {{L"five"}, "1 1"},
      {{L"wide"}, "1 0"},
      {{L""}, "0 0"},
      {{L"none", L"TWO"}, "0 0"},
      {{L"two'"}, "0 0"},
      {{L"Zo\u00EB"}, "1 1"},
      {{L"none", L"one", L"two"}, "1 0"}};
  for (const auto& [names, expected] : kCases) {
    EXPECT_EQ(Join(db().AnyMoviesAndTvCategories(names), db().IsPornCategoryPresent(names)),
              expected)
        << (names.empty() ? L"-" : names.begin()->c_str());
  }
  std::string bytes = "before";
  EXPECT_TRUE(db().GetNoCacheCategories(bytes));
  EXPECT_EQ(bytes, ",,\xFE");  // 300, NULL as the one before, -2.
  Sql("UPDATE categories SET client_should_cache=1");
  EXPECT_FALSE(db().GetNoCacheCategories(bytes));
  EXPECT_EQ(bytes, "");
  EXPECT_TRUE(db().IsFilterMachineOriented());

  Sql("DROP TABLE categories");
  EXPECT_EQ(Join(db().AnyMoviesAndTvCategories({L"two"}), db().IsPornCategoryPresent({L"six"}),
                 db().GetNoCacheCategories(bytes), db().GetError()),
            "0 0 0 ");
}

TEST_F(WebFilterTest, LongerSearchAddressesComeFirst) {
  EXPECT_TRUE(db().ClearAndAddSafeSearchParameters(
      R"({"safe_search_parameters":[{"id":1,"search_url":"a.example"},{"id":2},
          {"id":3,"search_url":"a.example/images","name":"safe","value":"on",
           "repeat_on_each_request":true,"row_version":5},{"id":4,"search_url":"b.example"}]})"));
  RecordList<CSafeSearchParameter> rules;
  EXPECT_TRUE(db().GetSafeSearchParameters(rules.list, "id", 1));
  std::string order;
  for (const auto* rule : rules.list) order += std::to_string(rule->id);
  EXPECT_EQ(order, "4312");
  EXPECT_EQ(Json(**std::next(rules.list.begin())),
            R"({"id": 3,"search_url": "a.example/images","name": "safe","value": "on",)"
            R"("repeat_on_each_request": true,"row_version": 5})");
  Sql("DROP TABLE safe_search_parameters");
  EXPECT_FALSE(db().GetSafeSearchParameters(rules.list, nullptr, 0));
  EXPECT_EQ(db().GetError(), R"({"code": 1,"desc": "no such table: safe_search_parameters"})");
}

TEST_F(WebFilterTest, OneUrlRule) {
  CFilterUrl url(5, "made.example", false);
  EXPECT_EQ(Json(url), R"({"filter_setting_id": 5,"url": "made.example","allowed": false})");
  EXPECT_EQ(url.Add2DB(handle()), SQLITE_DONE);
  EXPECT_TRUE(db().AddFilterUrl(&url, R"({"id":9,"url":"given.example"})"));
  for (const char* json : {R"([{"id":10}])", "7", "{", ""}) {
    EXPECT_FALSE(db().AddFilterUrl(&url, json)) << json;
    EXPECT_EQ(db().GetError(), R"({"desc": "json parsing error"})");
  }
  EXPECT_FALSE(db().AddFilterUrl(nullptr, "{}"));
  EXPECT_FALSE(db().AddFilterUrl(&url, R"({"id":9})"));
  EXPECT_EQ(db().GetError(), "SQLite error: 19 : UNIQUE constraint failed: filter_urls.id");
  EXPECT_EQ(Rows("SELECT * FROM filter_urls"),
            (Lines{"1|5|made.example|0", "9|NULL|given.example|1"}));
}

TEST_F(WebFilterTest, ProxyPortsRefuseEveryRecord) {
  Sql("INSERT INTO proxy_ports VALUES(1,3128,'old')");
  RecordList<CProxyPort> ports;
  EXPECT_TRUE(db().GetProxyPorts(ports.list, nullptr, 0));
  EXPECT_EQ(Json(*ports.list.front()), R"({"id": 1,"port": 3128,"description": "old"})");
  EXPECT_FALSE(db().ClearAndAddProxyPorts(R"([{"id":2,"port":8080}])"));
  EXPECT_EQ(db().GetError(), R"({"code": 1,"desc": "4 values for 3 columns"})");
  EXPECT_EQ(Row("SELECT * FROM proxy_ports"), "");
}

TEST_F(WebFilterTest, GatewayNeedsAccountAndPrefersPrimaryServers) {
  CSwgSettings settings;
  EXPECT_TRUE(db().ClearAndAddSwgSettings(
      R"({"username":"","password":"p","server":"s","secondary_internal_ipv6_dns":"fd00::2",
          "shift_policy_id":3,"split_dns_enabled":true,"split_dns_domains":"a,b"})"));
  EXPECT_TRUE(db().GetSwgSettings(&settings));
  EXPECT_TRUE(settings.IsValid());
  std::wstring ipv4 = L"kept", ipv6;
  settings.GetPreferredInternalDnsServers(ipv4, ipv6);
  EXPECT_EQ(ipv4 + L' ' + ipv6, L"kept fd00::2");
  settings.primary_internal_ipv6_dns = "fd00::1";
  settings.secondary_internal_ipv4_dns = "10.0.0.2";
  settings.GetPreferredInternalDnsServers(ipv4, ipv6);
  EXPECT_EQ(ipv4 + L' ' + ipv6, L"10.0.0.2 fd00::1");
  CSwgSettings::CopyServerIp(ipv4, std::string(300, '1').c_str());
  EXPECT_EQ(ipv4, std::wstring(256, L'1'));
  for (const auto field :
       {&CSwgSettings::username, &CSwgSettings::password, &CSwgSettings::server}) {
    CSwgSettings lacking = settings;
    lacking.*field = nullptr;
    EXPECT_FALSE(lacking.IsValid());
  }
}

}  // namespace
