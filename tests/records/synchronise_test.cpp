// Documents into tables, tables into lists, and the version report; and that a document inserted as
// one statement gives what its records give one by one.

#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"
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

TEST_F(SynchroniseTest, NestingIsBoundedByMemoryAlone) {
  const std::string deep(20000, '[');
  const std::string whole = deep + std::string(deep.size(), ']');
  EXPECT_TRUE(db().AddLogins(("{\"x\": " + whole + ", \"id\": 1}").c_str()));
  EXPECT_EQ(Ids(), "1 ");
  for (const char* json : {deep.c_str(), static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(db().AddLogins(json));
    EXPECT_EQ(db().GetError(), kBadJson);
  }
}

TEST_F(SynchroniseTest, WhatIsNoJsonEmptiesTheTable) {
  EXPECT_TRUE(db().AddLogins("{\"id\": 1}"));
  EXPECT_TRUE(db().ClearAndAddDevices(R"([{"id": 1}, {"id": 2, "nics": [{"id": 1}]}])"));
  EXPECT_EQ(Row("SELECT count(*) FROM nics"), "0");
  EXPECT_FALSE(db().ClearAndAddDevices("[{"));
  EXPECT_EQ(Row("SELECT count(*), (SELECT count(*) FROM logins) FROM devices"), "0|1");
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
  CPolicyDB session = Open(0);
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
    CPolicyDB session = Open();
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
    for (int row = 0; row < 2; ++row) ASSERT_TRUE(inner.StepRow());
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
  const auto count = [&] { return Row("SELECT count(*) FROM logins"); };
  {
    wexpol::ReadScope scope(handle());
    EXPECT_EQ(count(), "1");
    EXPECT_TRUE(db().AddLogins("{\"id\": 2}"));
    EXPECT_EQ(count(), "1");
    const wexpol::ReadScope nested(handle());  // Leaves the outer one alone.
    scope.Release();
    EXPECT_EQ(count(), "2");
    Sql("BEGIN");  // The caller's, which the end of the scope leaves open.
  }
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

std::vector<std::string> Split(const std::string& texts) {
  std::vector<std::string> parts;
  std::istringstream in(texts);
  for (std::string part; std::getline(in, part, '|');) parts.push_back(part);
  return parts;
}

// Random documents of a table: half of them sound, the others with every fault.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  std::string Document(const wexpol::Table& table) {
    sound_ = Below(2) != 0;
    std::string records = "[";
    const std::size_t count = Below(6);
    for (std::size_t i = 0; i < count; ++i) records += (i ? "," : "") + Space() + Record(table);
    records += Space() + "]";
    const std::string singular = std::string("\"") + table.json_key() + "\":" + Space();
    const std::string plural = std::string("\"") + table.name() + "\":" + Space();
    const std::string documents[] = {
        records,
        "{" + Space() + plural + records + "}",
        "{" + singular + records + Space() + ",\"x\":" + Value() + "}",
        "{\"y\":" + Value() + "," + plural + records + "," + singular + records + "}",
        "{" + singular + Record(table) + "}",
        Record(table),
        Value()};
    std::string text =
        Space() + documents[Below(std::size(documents) - (sound_ ? 1 : 0))] + Space();
    const std::size_t fault = sound_ ? 12 : Below(12);
    if (fault == 0) text.resize(Below(text.size() + 1));
    if (fault == 1 && !text.empty()) text[Below(text.size())] = static_cast<char>(1 + Below(255));
    if (fault == 2) text += Value();
    return text;
  }

 private:
  std::string Record(const wexpol::Table& table) {
    if (!sound_ && Below(25) == 0) return Value();
    std::string members;
    for (const wexpol::ColumnDef& column : table.columns()) {
      const bool is_key = (column.flags & wexpol::kKey) != 0;
      if (Below(12) == 0 && !(sound_ && is_key)) continue;
      const bool is_block = (column.flags & wexpol::kWellFormed) != 0 && (sound_ || Below(2));
      const std::string block = '"' + std::string(column.name == "mac" ? 12 : 168, 'a') + '"';
      const std::string member = "\"" + std::string(column.name) + "\":" + Space() +
                                 (is_key     ? std::to_string(Below(sound_ ? 400 : 40))
                                  : is_block ? block
                                             : Value());
      const bool twice = Below(15) == 0;
      members += (members.empty() ? "" : ",") + member + (twice ? "," + member : "");
      if (Below(20) == 0) members += ",\"\\u0069d\":" + Value() + ",\"other\":" + Value();
    }
    return "{" + members + Space() + "}";
  }

  std::string Value() {
    static const std::string kDeep = std::string(70, '[') + std::string(70, ']');
    static const auto kSound = Split(
        R"(1|2|-1|0|2147483647|2147483648|9223372036854775808|5.0|1e3|true|false|null|""|[]|{}|)"
        R"("plain text of some length"|"it\"s \\ \n"|"a\u0000b"|"\ud83d\ude00"|"tab\t"|)"
        R"("0011aaFF2233"|"0011aaFF223"|[1,{"id":5}]|{"id":7,"name":"n"}|)"
        "\"gr\xC3\xBC\xC3\x9F\"|\"bad \xFF\xC0\xAF utf\"");
    static const auto kBroken = Split("01|\"\\x\"|\"\\ud83d\"|\"ctl\x01\"");
    if (!sound_ && Below(40) == 0) return kBroken[Below(kBroken.size())];
    return Below(200) ? kSound[Below(kSound.size())] : kDeep;
  }

  std::string Space() { return Below(4) ? "" : std::string(Below(3), " \n\t\r"[Below(4)]); }

  std::mt19937 random_;
  bool sound_ = true;
};

class DocumentTableTest : public PolicyTest {
 protected:
  // The connection that knows the table function; handle() does not.
  sqlite3* whole() { return wexpol::HandleOf(db()); }

  // What comes of a document: the answer, the error, whether a transaction is open, the rows.
  std::string Outcome(sqlite3* db, const wexpol::RecordClass& record_class, const std::string& json,
                      bool in_transaction) {
    const std::string table = record_class.table().name();
    const auto exec = [&](const std::string& sql) {
      sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    };
    if (in_transaction) exec("BEGIN");
    std::string error;
    std::string outcome = wexpol::AddDocument(db, record_class, json.c_str(), error) ? "1" : "0";
    outcome += " " + error + (sqlite3_get_autocommit(db) ? " closed" : " open");
    std::string cells = "rowid";
    for (const wexpol::ColumnDef& column : record_class.table().columns()) {
      cells += ",quote(" + std::string(column.name) + ")";
    }
    for (const std::string& row : RowsOf(db, "SELECT " + cells + " FROM " + table)) {
      outcome += "\n" + row;
    }
    if (in_transaction) exec("ROLLBACK");
    exec("DELETE FROM " + table);
    return outcome;
  }
};

// WEXPOL_DOCUMENTS sets how many documents are tried.
TEST_F(DocumentTableTest, BothWaysGiveTheSame) {
  const char* wanted = std::getenv("WEXPOL_DOCUMENTS");
  const int rounds = wanted ? std::atoi(wanted) : 4000;
  const wexpol::RecordClass* const kClasses[] = {
      &wexpol::kRecordClass<CLogin>, &wexpol::kRecordClass<CNic>, &wexpol::kRecordClass<CDevice>,
      &wexpol::kRecordClass<CFilterSetting>};
  const char* const kClauses[] = {"", "REPLACE", "IGNORE", "FAIL", "ABORT", "ROLLBACK"};
  Generator generator(20);
  int stored = 0, refused = 0;
  for (int round = 0; round < rounds; ++round) {
    const wexpol::RecordClass& record_class = *kClasses[generator.Below(std::size(kClasses))];
    const std::string table = record_class.table().name();
    if (round % 100 == 0) {
      const std::string clause = kClauses[round / 100 % std::size(kClauses)];
      for (const auto* each : kClasses) {
        const std::string name = each->table().name();
        const std::string columns =
            Row("SELECT group_concat(name, ',') FROM pragma_table_info('" + name + "')");
        Sql("DROP TABLE " + name + "; CREATE TABLE " + name + "(" + columns + ", UNIQUE(id)" +
            (clause.empty() ? "" : " ON CONFLICT " + clause) + ")");
      }
    }
    const std::string json = generator.Document(record_class.table());
    const bool in_transaction = generator.Below(2) != 0;
    const std::string expected = Outcome(handle(), record_class, json, in_transaction);
    ASSERT_EQ(Outcome(whole(), record_class, json, in_transaction), expected) << json;
    stored += expected[0] == '1' && expected.find('\n') != expected.npos;
    refused += expected[0] == '0';
  }
  EXPECT_GT(stored, rounds / 3);
  EXPECT_GT(refused, rounds / 3);
}

TEST_F(DocumentTableTest, IsOneStatement) {
  std::string json;
  for (int i = 0; i < 100; ++i) json += (i ? ",{\"id\":" : "[{\"id\":") + std::to_string(i) + "}";
  int inserts = 0;
  const auto count = [](unsigned, void* counter, void*, void* sql) {
    *static_cast<int*>(counter) += std::string_view(static_cast<char*>(sql)).starts_with("INSERT");
    return 0;
  };
  sqlite3_trace_v2(whole(), SQLITE_TRACE_STMT, count, &inserts);
  EXPECT_TRUE(db().AddLogins((json + "]").c_str()));
  EXPECT_EQ(inserts, 1);
  EXPECT_FALSE(db().AddLogins("[{\"id\": 200}, {\"id\": 200}]"));  // One more, then one by one.
  EXPECT_EQ(inserts, 4);
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "101");
}

// Waiting a second time would be in vain; a fault of the document is told first all the same.
TEST_F(DocumentTableTest, ALockIsWaitedForOnce) {
  int waits = 0;
  const auto count = [](void* counter, int) { return ++*static_cast<int*>(counter), 0; };
  sqlite3_busy_handler(whole(), count, &waits);
  const struct {
    const char* json;
    const char* error;
  } kCases[] = {{"[{\"id\": 1}, {\"id\": 2}]", "{\"code\": 5,\"desc\": \"database is locked\"}"},
                {"[{\"id\": 1}, {\"id\": 2}", "{\"desc\": \"Error parsing json\"}"},
                {"[{\"x\": 1}, {\"id\": 2}]", "{\"desc\": \"Error parsing json\"}"}};
  Sql("BEGIN IMMEDIATE");
  for (const auto& c : kCases) {
    waits = 0;
    EXPECT_FALSE(db().AddLogins(c.json));
    EXPECT_EQ(db().GetError(), c.error);
    EXPECT_LE(waits, 1);
  }
  Sql("COMMIT");
}

TEST_F(DocumentTableTest, ALostTransactionRefusesItsRecords) {
  Sql("INSERT INTO logins(id) VALUES(9); CREATE TRIGGER ends BEFORE DELETE ON logins BEGIN "
      "SELECT RAISE(ROLLBACK, 'gone'); END");
  ASSERT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  std::string error;
  EXPECT_FALSE(wexpol::ReplaceTable(whole(), wexpol::kRecordClass<CLogin>,
                                    "[{\"id\": 1}, {\"id\": 2}]", error));
  EXPECT_EQ(error, "{\"code\": 19,\"desc\": \"gone\"}");
  EXPECT_EQ(Rows("SELECT id FROM logins"), std::vector<std::string>{"9"});
}

}  // namespace
