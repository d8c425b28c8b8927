// Documents into tables, tables into lists, and the version report.

#include <algorithm>
#include <tuple>

#include "tests/support/policy_test.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/statement_cache.h"

namespace {

class SynchroniseTest : public PolicyTest {
 protected:
  std::string Ids() {
    std::string ids;
    for (const std::string& id : Rows("SELECT id FROM logins ORDER BY rowid")) ids += id + " ";
    return ids;
  }
};

constexpr char kBadJson[] = "{\"desc\": \"Error parsing json\"}";

TEST_F(SynchroniseTest, EnvelopesAndFaults) {
  const std::string deep(20000, '[');
  // The document, the ids that are stored, and the error; empty for success.
  const std::tuple<std::string, const char*, const char*> kCases[] = {
      {"[]", "", ""},
      {"[{\"id\": 1}, {\"id\": 2}]", "1 2 ", ""},
      {" {\"id\": 1}\r\n", "1 ", ""},
      {"{\"login\": {\"id\": 1}}", "1 ", ""},
      {"{\"login\": [{\"id\": 1}, {\"id\": 2}]}", "1 2 ", ""},
      {"{\"logins\": [{\"id\": 3}]}", "3 ", ""},
      {"{\"logins\": [{\"id\": 3}], \"login\": {\"id\": 4}}", "4 ", ""},
      {"{\"login\": 5}", "", kBadJson},
      {"{\"logins\": null}", "", kBadJson},
      {"{\"device\": {\"id\": 1}}", "", kBadJson},
      {"{\"login\": {\"login\": {\"id\": 1}}}", "", kBadJson},
      {"", "", kBadJson},
      {"7", "", kBadJson},
      {"[{\"id\": 1}] x", "", kBadJson},
      {"[{\"id\": 1}, {\"id\": 2}", "", kBadJson},
      {"\xEF\xBB\xBF[]", "", kBadJson},
      {deep, "", kBadJson},
      {"[{\"id\": 1}, null, {\"id\": 3}]", "1 ", kBadJson},
      {"[{\"id\": 1}, {\"id\": 2}, {\"name\": \"x\"}, {\"id\": 4}]", "1 2 ", kBadJson},
      {"[{\"id\": 1}, {\"id\": \"2\"}]", "1 ", kBadJson},
      {"[{\"id\": 1}, {\"id\": 2}, {\"id\": 1}, {\"id\": 4}]", "1 2 ",
       "{\"code\": 19,\"desc\": \"UNIQUE constraint failed: logins.id\"}"},
      {"{\"id\": 1, \"id\": 2, \"name\": \"a\"}", "1 ", ""},
      {"{\"x\": " + deep + std::string(deep.size(), ']') + ", \"id\": 1}", "1 ", ""},
  };
  for (const auto& [json, ids, error] : kCases) {
    SCOPED_TRACE(json.substr(0, 60));
    Sql("DELETE FROM logins");
    CPolicyDB session(kAccessCode, path().c_str(), kReadWrite, 100);
    EXPECT_EQ(session.AddLogins(json.c_str()), *error == '\0');
    EXPECT_EQ(session.GetError(), error);
    EXPECT_EQ(Ids(), ids);
  }
  EXPECT_FALSE(db().AddLogins(nullptr));
  EXPECT_EQ(db().GetError(), kBadJson);
}

TEST_F(SynchroniseTest, MembersInAnyOrderGiveTheSameRow) {
  for (const char* json :
       {"{\"id\": 1, \"device_id\": 2, \"name\": \"n\", \"policy_id\": 4, \"is_admin\": false}",
        "{\"is_admin\": false, \"policy_id\": 4, \"name\": \"n\", \"device_id\": 2, \"id\": 1}",
        "{\"u\": {\"id\": 9}, \"name\": \"n\", \"i\": 0, \"id\": 1, \"is_admin\": 0, \"ids\": [], "
        "\"name\": \"late\", \"policy_id\": 4, \"device_id\": 2, \"id\": 8}"}) {
    ASSERT_TRUE(db().ClearLogins());
    EXPECT_TRUE(db().AddLogins(json)) << db().GetError();
    EXPECT_EQ(Rows("SELECT * FROM logins"), std::vector<std::string>{"1|2|n|4|NULL|NULL|0"});
  }
}

TEST_F(SynchroniseTest, ClearAndAddReplacesAlsoByNothing) {
  const std::string two = "[{\"id\": 1, \"name\": \"a\"}, {\"id\": 2, \"nics\": [{\"id\": 1}]}]";
  EXPECT_TRUE(db().ClearAndAddDevices(two.c_str()));
  EXPECT_TRUE(db().ClearAndAddDevices(two.c_str()));
  EXPECT_EQ(Rows("SELECT id, name FROM devices"), (std::vector<std::string>{"1|a", "2|NULL"}));
  EXPECT_TRUE(Rows("SELECT * FROM nics").empty());
  EXPECT_TRUE(db().ClearAndAddDevices("[]"));
  EXPECT_TRUE(Rows("SELECT * FROM devices").empty());
  EXPECT_TRUE(db().ClearAndAddDevices(two.c_str()));
  EXPECT_FALSE(db().ClearAndAddDevices("[{"));
  EXPECT_TRUE(Rows("SELECT * FROM devices").empty());
}

TEST_F(SynchroniseTest, ATransactionMakesItAllOrNothing) {
  ASSERT_TRUE(db().AddLogins("{\"id\": 1}"));
  ASSERT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  EXPECT_TRUE(db().ClearLogins());
  EXPECT_FALSE(db().AddLogins("[{\"id\": 5}, {\"id\": 5}]"));
  EXPECT_EQ(Ids(), "1 ");  // The other connection sees the committed state.
  EXPECT_TRUE(db().Transaction(TRANSACTION_ROLLBACK));
  EXPECT_EQ(Ids(), "1 ");
}

TEST_F(SynchroniseTest, ALockedTableFailsOnceAfterTheTimeout) {
  CPolicyDB session(kAccessCode, path().c_str(), kReadWrite, 0);
  Sql("BEGIN IMMEDIATE");
  EXPECT_FALSE(session.AddLogins("{\"id\": 1}"));
  EXPECT_EQ(session.GetError(), "{\"code\": 5,\"desc\": \"database is locked\"}");
  EXPECT_FALSE(session.ClearLogins());
  Sql("COMMIT");
  EXPECT_TRUE(session.AddLogins("{\"id\": 1}"));
}

TEST_F(SynchroniseTest, ListsTakeAColumnNameAndNothingElse) {
  ASSERT_TRUE(
      db().AddLogins("[{\"id\": 1, \"device_id\": 7, \"name\": \"5\"}, {\"id\": 2, "
                     "\"device_id\": 8}, {\"id\": 3, \"device_id\": 7}]"));
  const std::tuple<const char*, long, std::size_t, const char*> kCases[] = {
      {nullptr, 99, 3, ""},
      {"device_id", 7, 2, ""},
      {"name", 5, 1, ""},
      {"id", -1, 0, ""},
      {"unknown", 1, 0, "{\"code\": 1,\"desc\": \"no such column: unknown\"}"},
      {"", 1, 0, "{\"code\": 1,\"desc\": \"no such column: \"}"},
      {"1=1 OR id", 1, 0, "{\"code\": 1,\"desc\": \"no such column: 1=1 OR id\"}"},
      {"id=id--\"", 1, 0, "{\"code\": 1,\"desc\": \"no such column: id=id--\\\"\"}"},
  };
  for (const auto& [column, value, count, error] : kCases) {
    CPolicyDB session(kAccessCode, path().c_str(), kReadWrite, 100);
    RecordList<CLogin> logins;
    EXPECT_EQ(session.GetLogins(logins.list, column, value), *error == '\0');
    EXPECT_EQ(logins.list.size(), count) << error;
    EXPECT_EQ(session.GetError(), error);
  }
  RecordList<CLogin> logins;
  EXPECT_TRUE(db().GetLogins(logins.list, "id", 3));
  EXPECT_TRUE(db().GetLogins(logins.list, "id", 1));
  EXPECT_EQ(logins.list.front()->id, 3);  // Appended to what was there.
  EXPECT_EQ(logins.list.back()->id, 1);
}

TEST_F(SynchroniseTest, OneRecordIsReadOrLeftAlone) {
  CAccount account;
  account.id = 5;
  EXPECT_FALSE(db().GetRecord(account));
  EXPECT_EQ(account.id, 5);
  EXPECT_EQ(db().GetError(), "");
  EXPECT_TRUE(db().ClearAndAddAccounts("{\"account\": {\"id\": 8, \"locale_id\": 1033}}"));
  EXPECT_TRUE(db().GetRecord(account));
  EXPECT_EQ(Json(account), "{\"id\": 8,\"locale_id\": 1033}");
  Sql("DROP TABLE accounts");
  EXPECT_FALSE(db().GetRecord(account));
  EXPECT_EQ(db().GetError(), "{\"code\": 1,\"desc\": \"no such table: accounts\"}");
  EXPECT_TRUE(db().ClearAndAddAccounts("[]"));  // Nothing to insert, and the clear may fail.
  EXPECT_FALSE(db().ClearAndAddAccounts("{}"));
  EXPECT_EQ(db().GetError(), kBadJson);  // A bad record is told before a missing table.
}

TEST_F(SynchroniseTest, StatementsOfTheSameTextDoNotDisturbOneAnother) {
  ASSERT_TRUE(db().AddLogins("[{\"id\": 1}, {\"id\": 2}]"));
  wexpol::EnableStatementCache(handle());
  const auto ids = [&] { return wexpol::Statement(handle(), "SELECT id FROM logins"); };
  {
    wexpol::Statement outer = ids();
    ASSERT_TRUE(outer.StepRow());
    wexpol::Statement inner = ids();
    ASSERT_TRUE(inner.StepRow() && inner.StepRow());
    ASSERT_TRUE(outer.StepRow());
    EXPECT_EQ(outer.Int(0) + inner.Int(0), 4);
  }
  for (int i = 0; i < 2000; ++i) {  // More texts than are kept.
    const std::string text = "SELECT id + " + std::to_string(i) + " FROM logins WHERE id=?";
    wexpol::Statement select = wexpol::Statement::Composed(handle(), text, i % 2 + 1);
    ASSERT_TRUE(select.StepRow());
    ASSERT_EQ(select.Int(0), i % 2 + 1 + i);
  }
  wexpol::DropStatementCache(handle());
}

TEST_F(SynchroniseTest, AReadScopeHoldsOneState) {
  ASSERT_TRUE(db().AddLogins("{\"id\": 1}"));
  const auto count = [&] {
    wexpol::Statement select(handle(), "SELECT count(*) FROM logins");
    return select.StepRow() ? select.Int(0) : -1;
  };
  {
    wexpol::ReadScope scope(handle());
    EXPECT_EQ(count(), 1);
    EXPECT_TRUE(db().AddLogins("{\"id\": 2}"));
    EXPECT_EQ(count(), 1);
    const wexpol::ReadScope nested(handle());  // Leaves the outer one alone.
    scope.Release();
    EXPECT_EQ(count(), 2);
  }
  Sql("BEGIN");
  { const wexpol::ReadScope within(handle()); }
  EXPECT_EQ(sqlite3_get_autocommit(handle()), 0);
  Sql("COMMIT");
}

TEST_F(SynchroniseTest, VersionReport) {
  const auto report = [&](std::uint64_t& mask) {
    std::string out = "old";
    db().GetGlobalTableJson(mask, out);
    return out;
  };
  std::uint64_t mask = 1;
  EXPECT_EQ(report(mask),
            "{\"g\": \"134217728,0;268435456,0;536870912,0;1073741824,0;2147483648,0;"
            "4294967296,0;8589934592,0;17179869184,0;2199023255552,0\"}");
  EXPECT_EQ(mask, 0x207F8000001u);
  Sql("INSERT INTO services(id, row_version) VALUES(1, 9007199254740993), (2, 4);"
      "INSERT INTO time_zones(id) VALUES(1); DROP TABLE categories");
  mask = 0;
  EXPECT_NE(report(mask).find(";8589934592,9007199254740993;"), std::string::npos);
  EXPECT_EQ(mask, 0x205F8000000u);

  const std::pair<const char*, std::uint64_t> kAnswers[] = {
      {"{\"g\": \"134217728,2199023255552\"}", 0x20008000000},
      {"{\"g\": \",,1, 6,x,7z\"}", 7},
      {"{\"g\": \"-1\"}", UINT64_MAX},
      {"{\"g\": \"99999999999999999999\"}", INT64_MAX},
      {"{\"g\": \"\"}", 0},
      {"{\"g\": 5}", 0},
      {"{}", 0},
      {"[\"g\"]", 0},
      {"{\"g\": \"1\"", 0}};
  for (const auto& [json, bits] : kAnswers) EXPECT_EQ(CGlobalTables().ParseJson(json), bits);
  EXPECT_EQ(CGlobalTables().ParseJson(nullptr), 0u);
}

}  // namespace
