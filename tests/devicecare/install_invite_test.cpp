// Invitations and installation logins.

#include "tests/support/policy_test.h"

namespace {

using wexpol::AgentKey;

using InstallInviteTest = PolicyTest;

TEST_F(InstallInviteTest, AddOrUpdate) {
  for (const char* refused : {R"([{"id": 1}])", "{", (const char*)nullptr}) {
    EXPECT_FALSE(db().AddOrUpdateInstallInite(refused));
  }
  // The document is the record, also where it looks like an envelope.
  EXPECT_TRUE(
      db().AddOrUpdateInstallInite(R"({"id": 1,"token": "t","install_invite": {"id": 2}})"));
  EXPECT_TRUE(db().AddOrUpdateInstallInite(R"({"id": 1,"link": "l","row_version": 3})"));
  EXPECT_FALSE(db().AddOrUpdateInstallInite(R"({"id": 1})"));  // An update of nothing.
  EXPECT_TRUE(db().AddOrUpdateInstallInite(R"({"id": "1"})"));
  EXPECT_TRUE(db().AddOrUpdateInstallInite("{}"));  // Without an id each is a new row.
  EXPECT_EQ(Row("SELECT * FROM install_invites"), "1|NULL|NULL|t|l|3");
  EXPECT_EQ(Row("SELECT count(*) FROM install_invites"), "3");
}

TEST_F(InstallInviteTest, Token) {
  wchar_t* token;
  EXPECT_FALSE(CInstallInvite::GetToken(&token, handle()));
  EXPECT_EQ(token, nullptr);
  ASSERT_TRUE(db().AddInstallInvites(R"([{"token": "tök"},{"id": 4,"token": "next"}])"));
  ASSERT_TRUE(CInstallInvite::GetToken(&token, handle()));
  const CInstallInvite invite(9, std::unique_ptr<wchar_t[]>(token).get());
  EXPECT_EQ(Json(invite), R"({"id": 9,"token": "tök"})");
  EXPECT_EQ(invite.GetToken(), L"t\u00f6k");
  EXPECT_EQ(invite.GetTokenA() + CInstallInvite().GetTokenA(), "tök");
}

TEST_F(InstallInviteTest, AccountIdOfADocument) {
  EXPECT_EQ(CInstallInvite::GetAccountId(R"({"account_id": 5})"), 5);
  EXPECT_EQ(CInstallInvite::GetAccountId(R"([{"account_id": 6},{"account_id": 7}])"), 6);
  for (const char* none : {R"({"account_id": "5"})", R"({"account_id": 4294967297})",
                           R"([[{"account_id": 5}]])", "[]", "{}", "5", "{"}) {
    EXPECT_EQ(CInstallInvite::GetAccountId(none), -1);
  }
}

TEST_F(InstallInviteTest, RegistryWritesToOneKeyAndReadsFromTheOther) {
  Sql("INSERT INTO install_invites(id,token) VALUES(72,'a'),(73,'b')");
  CInstallInvite invite(72, nullptr);
  EXPECT_TRUE(invite.WriteInstallInviteIdToRegistry());
  EXPECT_EQ(Join(invite.ReadInstallInviteIdFromRegistry(), db().GetInstallInvite(&invite, 0),
                 CInstallInvite::DeleteInstallInviteIdFromRegistry()),
            "0 0 0");

  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"INV", 73));
  EXPECT_TRUE(db().GetInstallInvite(&invite, 0));
  EXPECT_EQ(invite.GetToken(), L"b");
  EXPECT_TRUE(db().GetInstallInvite(&invite, 72));
  EXPECT_EQ(invite.GetToken(), L"a");
  EXPECT_TRUE(CInstallInvite::DeleteInstallInviteIdFromRegistry());
  EXPECT_FALSE(db().GetInstallInvite(&invite, -1));
}

TEST_F(InstallInviteTest, DownloadUrl) {
  Sql("INSERT INTO install_invites(id,link,row_version) VALUES(1,'one',5),(2,'two',8),(3,NULL,7)");
  const std::pair<long, std::string> cases[] = {
      {0, "two"}, {-1, "two"}, {1, "one"}, {3, "kept"}, {4, "kept"}};
  for (const auto& [id, link] : cases) {
    std::string url = "kept";
    EXPECT_EQ(db().GetLumoraDownloadUrlFromInstallInvite(url, id), link != "kept");
    EXPECT_EQ(url, link) << id;
  }
}

TEST_F(InstallInviteTest, InstallerParameters) {
  const std::pair<const char*, std::wstring> cases[] = {
      {"https://x.test/setup.exe?x=1", L"-x \"1\" "},
      {"s?b=2&a=1", L"-a \"1\" -b \"2\" "},
      {"s?B=1&a=%20\"&_=?&", L"-B \"1\" -_ \"?\" -a \"%20\"\" "},
      {"s?a=1=2&&a=3&c&=d", L"- \"d\" -a \"1=2\" -c \"\" "},
      {"s?n=ä", L"-n \"\u00e4\" "},
      {"s?&&", L"kept"},
      {"s", L"kept"},
      {nullptr, L"kept"},
  };
  for (const auto& [link, parameters] : cases) {
    CInstallInvite invite;
    invite.link = link;
    std::wstring out = L"kept";
    EXPECT_EQ(invite.BuildInstallCmdLineParameters(out), parameters != L"kept");
    EXPECT_EQ(out, parameters);
  }
}

TEST_F(InstallInviteTest, InstallationLogins) {
  const std::pair<const wchar_t*, std::wstring> cases[] = {{L"OFFICE\\user1", L"OFFICE, user1"},
                                                           {L"u", L", u"},
                                                           {L"A\\B\\", L"A, B\\"},
                                                           {nullptr, L", "}};
  for (const auto& [login, parts] : cases) {
    const CInstallationLogin record(login, L"p");
    EXPECT_EQ(record.GetDomain() + L", " + record.GetUserNameW(), parts);
  }
  EXPECT_FALSE(db().ClearAndAddInstallationLogins(R"({"id": 1})"));
  RecordList<CInstallationLogin> logins;
  EXPECT_TRUE(db().ClearAndAddInstallationLogins(R"({"id": 1,"account_id": 2})"));
  EXPECT_TRUE(db().GetInstallationLogins(logins.list));
  EXPECT_EQ(logins.list.size(), 1u);
}

}  // namespace
