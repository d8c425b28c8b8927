// A document inserted as one statement gives what its records give one by one.

#include <cstdlib>
#include <random>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"

namespace {

// Random documents of a table: most of them whole, some with every fault.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  std::string Document(const wexpol::Table& table) {
    std::string records = "[";
    const std::size_t count = Below(6);
    for (std::size_t i = 0; i < count; ++i) records += (i ? "," : "") + Space() + Record(table);
    records += Space() + "]";
    const std::string singular = std::string("\"") + table.json_key() + "\":" + Space();
    const std::string plural = std::string("\"") + table.name() + "\":" + Space();
    const std::string documents[] = {
        records,
        records,
        "{" + Space() + plural + records + "}",
        "{" + singular + records + Space() + ",\"x\":" + Value() + "}",
        "{\"y\":" + Value() + "," + plural + records + "," + singular + records + "}",
        "{" + singular + Record(table) + "}",
        Record(table),
        Value()};
    std::string text = Space() + documents[Below(std::size(documents))] + Space();
    const std::size_t fault = Below(12);
    if (fault == 0) text.resize(Below(text.size() + 1));
    if (fault == 1 && !text.empty()) text[Below(text.size())] = static_cast<char>(1 + Below(255));
    if (fault == 2) text += Value();
    return text;
  }

 private:
  std::string Record(const wexpol::Table& table) {
    if (Below(25) == 0) return Value();
    std::string members;
    for (const wexpol::ColumnDef& column : table.columns()) {
      if (Below(12) == 0) continue;
      const bool twice = Below(15) == 0;
      const bool is_key = (column.flags & wexpol::kKey) != 0;
      const std::string member = "\"" + std::string(column.name) + "\":" + Space() +
                                 (is_key ? std::to_string(Below(40)) : Value());
      members += (members.empty() ? "" : ",") + member + (twice ? "," + member : "");
      if (Below(20) == 0) members += ",\"\\u0069d\":" + Value() + ",\"other\":" + Value();
    }
    return "{" + members + Space() + "}";
  }

  std::string Value() {
    static const std::string kDeep = std::string(70, '[') + std::string(70, ']');
    static const std::string kValues[] = {"1",
                                          "2",
                                          "-1",
                                          "0",
                                          "2147483647",
                                          "2147483648",
                                          "9223372036854775808",
                                          "5.0",
                                          "1e3",
                                          "01",
                                          "true",
                                          "false",
                                          "null",
                                          "\"\"",
                                          "\"plain text of some length\"",
                                          "\"it\\\"s \\\\ \\n\"",
                                          "\"a\\u0000b\"",
                                          "\"\\ud83d\\ude00\"",
                                          "\"\\ud83d\"",
                                          "\"gr\xC3\xBC\xC3\x9F\"",
                                          "\"bad \xFF\xC0\xAF utf\"",
                                          "\"\\x\"",
                                          "\"0011aaFF2233\"",
                                          "\"0011aaFF223\"",
                                          "[]",
                                          "{}",
                                          "[1,{\"id\":5}]",
                                          "{\"id\":7,\"name\":\"n\"}",
                                          "\"ctl\x01\"",
                                          "\"tab\\t\"",
                                          kDeep};
    return kValues[Below(std::size(kValues) - (Below(8) ? 1 : 0))];
  }

  std::string Space() { return Below(4) ? "" : std::string(Below(3), " \n\t\r"[Below(4)]); }

  std::mt19937 random_;
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
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(db, ("SELECT rowid,* FROM " + table).c_str(), -1, &select, nullptr);
    while (sqlite3_step(select) == SQLITE_ROW) {
      outcome += "\n";
      for (int i = 0; i < sqlite3_column_count(select); ++i) {
        const auto* cell = static_cast<const char*>(sqlite3_column_blob(select, i));
        outcome += std::to_string(sqlite3_column_type(select, i)) + ":" +
                   std::string(cell ? cell : "", sqlite3_column_bytes(select, i)) + "|";
      }
    }
    sqlite3_finalize(select);
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
  int stored = 0;
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
  }
  EXPECT_GT(stored, rounds / 40);
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

TEST_F(DocumentTableTest, AClosedSessionTellsTheFaultOfTheDocumentFirst) {
  for (const wexpol::RecordClass* each : wexpol::ConsoleTables()) {
    std::string error;
    EXPECT_FALSE(wexpol::AddDocument(nullptr, *each, "[", error));
    EXPECT_EQ(error, "{\"desc\": \"Error parsing json\"}") << each->table().name();
    EXPECT_FALSE(wexpol::ReplaceTable(nullptr, *each, "[]", error));
    EXPECT_EQ(error, "{\"code\": 21,\"desc\": \"bad parameter or other API misuse\"}")
        << each->table().name();
  }
}

}  // namespace
