// The statement texts of the library: that the engine understands every one of them, that none
// scans a table that grows, and that no index changes an answer.

#include <filesystem>
#include <random>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"

namespace {

namespace fs = std::filesystem;

struct SourceText {
  std::string where;
  std::string text;
};

// This one has a value too many, which is meant: it never inserts.
bool IsMeantToFail(std::string_view text) { return text.starts_with("INSERT INTO proxy_ports("); }

// What the literals that stand side by side from a quote on make together.
std::string TextAt(const std::string& source, std::size_t quote) {
  std::string text;
  for (std::size_t at = quote, end; source[at] == '"'; at = source.find_first_not_of(" \n", end)) {
    end = source.find('"', at + 1) + 1;
    text += source.substr(at + 1, end - at - 2);
  }
  return text;
}

// The texts of the library that begin as the type of statement texts demands. What ends in a blank
// is the front of a text that is put together at run time. The engine's own list of tables is no
// table of ours; a word alone is no statement.
std::vector<SourceText> Statements() {
  std::vector<SourceText> statements;
  for (const auto& entry : fs::recursive_directory_iterator(WEXPOL_SOURCE_DIR "/src/wexpol")) {
    const std::string where = entry.path().filename().string();
    if (!entry.is_regular_file() || where == "statement.h") continue;
    const std::string source = ReadBytes(entry.path().wstring());
    for (const std::string word :
         {"\"SELECT ", "\"INSERT ", "\"UPDATE ", "\"DELETE ", "\"PRAGMA ", "\"BEGIN", "\"COMMIT",
          "\"ROLLBACK", "\"SAVEPOINT ", "\"RELEASE "}) {
      for (std::size_t at = 0; (at = source.find(word, at)) != source.npos; ++at) {
        const bool in_comment = source.rfind("//", at) + 1 > source.rfind('\n', at) + 1;
        if (in_comment || source[source.find_last_not_of(" \n", at - 1)] == '"') continue;
        const std::string text = TextAt(source, at);
        const bool is_word = text.back() == ' ' && text == word.substr(1);
        const bool is_ours = text.find("sqlite_schema") == text.npos && !is_word;
        if (is_ours && !IsMeantToFail(text)) statements.push_back({where, text});
      }
    }
  }
  return statements;
}

class StatementTextTest : public PolicyTest {
 protected:
  void ExpectUnderstood(sqlite3* db, const std::string& text, const std::string& where) {
    sqlite3_stmt* statement = nullptr;
    const char* rest = "";
    EXPECT_EQ(sqlite3_prepare_v2(db, text.c_str(), -1, &statement, &rest), SQLITE_OK)
        << where << ": " << text << ": " << sqlite3_errmsg(db);
    EXPECT_STREQ(rest, "") << where;
    EXPECT_NE(statement, nullptr) << where;
    sqlite3_finalize(statement);
  }
};

TEST_F(StatementTextTest, TheEngineUnderstandsEveryOne) {
  std::multiset<std::string> fronts;
  int whole = 0;
  for (const auto& [where, text] : Statements()) {
    if (text.back() == ' ') {
      fronts.insert(text);
    } else {
      ExpectUnderstood(handle(), text, where);
      ++whole;
    }
  }
  EXPECT_GT(whole, 80);
  EXPECT_EQ(fronts, (std::multiset<std::string>{"DELETE FROM ", "INSERT INTO ",
                                                "SELECT max(row_version) FROM ",
                                                "UPDATE device_services SET "}));
}

TEST_F(StatementTextTest, TheEngineUnderstandsThoseOfEveryTable) {
  for (const wexpol::RecordClass* each : wexpol::AllTables()) {
    const wexpol::Table& table = each->table();
    std::vector<wexpol::Sql> texts = {table.insert(), table.select(), table.clear(),
                                      table.select_by_key(), table.delete_by_key()};
    if (table.TakesDocuments()) texts.push_back(table.insert_document());
    for (const wexpol::Sql sql : texts) {
      if (IsMeantToFail(sql.text())) continue;
      ExpectUnderstood(wexpol::HandleOf(db()), sql.text(), table.name());
    }
  }
}

TEST_F(StatementTextTest, NoneScansATableThatGrows) {
  // Few rows by their nature, or asked for so seldom that an index would cost more than it spares.
  constexpr std::string_view kSmall =
      " CONSTANT accounts alert_event_types alert_logs alerts_sent appearances auth_logs "
      "device_backup_details policies install_invites login_details logins sqlite_schema "
      "nxb_av_settings service_configurations device_backup_statistics "
      "premium_remote_control_settings ";
  // Of tables that grow: what wants every row, the first row, or a row by its address in the LAN.
  const std::set<std::string> kMeant = {
      "SELECT device_id FROM nics NOT INDEXED",
      "SELECT * FROM nics WHERE mac=?",
      "SELECT device_id FROM nics WHERE mac=?",
      "SELECT id FROM nics WHERE mac=?",
      "SELECT * FROM devices WHERE token IS NOT NULL",
      "SELECT token FROM devices",
      "SELECT id FROM categories WHERE client_should_cache==0",
      "SELECT service_id FROM device_services WHERE upgrade_action_id!=1 "
      "AND (?1<1 OR device_id=?1) GROUP BY service_id"};
  for (const auto& [where, text] : Statements()) {
    if (text.back() == ' ' || kMeant.count(text)) continue;
    for (const std::string& step : Rows("EXPLAIN QUERY PLAN " + text)) {
      const std::size_t scan = step.find("|SCAN ");
      if (scan == step.npos) continue;
      const std::string table = step.substr(scan + 5, step.find(' ', scan + 6) - scan - 5) + ' ';
      EXPECT_NE(kSmall.find(table), kSmall.npos) << where << " scans" << table << text;
    }
  }
}

// Every select, on tables full of few different values, answers the same rows in the same order
// with and without the indexes.
TEST_F(StatementTextTest, NoIndexChangesAnAnswer) {
  const auto with = [](std::string text, const char* value) {
    for (std::size_t at = 0; (at = text.find('?', at)) != text.npos;) {
      text.replace(at, std::isdigit(text[at + 1]) ? 2 : 1, value);
    }
    return text;
  };
  std::mt19937 random(7);
  Sql("BEGIN");
  for (const std::string& table : Rows("SELECT name FROM sqlite_schema WHERE type='table'")) {
    const auto columns = Rows("SELECT name FROM pragma_table_info('" + table + "')");
    for (int row = 0; row < 40; ++row) {
      std::string values;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto value = random() % 5;
        values += (i ? "," : "") + (value ? std::to_string(value) : std::string("NULL"));
      }
      Sql("INSERT OR IGNORE INTO " + table + " VALUES(" + values + ")");
    }
  }
  Sql("COMMIT");
  const auto answers = [&] {
    std::map<std::string, std::vector<std::vector<std::string>>> found;
    for (const auto& [where, text] : Statements()) {
      if (text.rfind("SELECT ", 0) != 0 || text.back() == ' ') continue;
      for (const char* value : {"1", "2", "3", "4"}) {
        found[text].push_back(Rows(with(text, value)));
      }
    }
    return found;
  };
  const auto indexed = answers();
  for (const std::string& index :
       Rows("SELECT name FROM sqlite_schema WHERE type='index' AND sql IS NOT NULL")) {
    Sql("DROP INDEX " + index);
  }
  EXPECT_EQ(indexed, answers());
}

}  // namespace
