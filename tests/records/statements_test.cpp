// The statement texts of the library: that the engine understands every one of them, that none
// scans a table that grows, and that no index changes an answer.

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"

namespace {

namespace fs = std::filesystem;

struct SourceText {
  std::string where;
  std::string text;
};

// The strings of C++ sources; of those that stand side by side, what they make together.
class Strings {
 public:
  explicit Strings(const fs::path& file) : name_(file.filename().string()) {
    std::ifstream in(file, std::ios::binary);
    source_.assign(std::istreambuf_iterator<char>(in), {});
    for (at_ = 0; at_ < source_.size();) Take();
    Close();
  }
  std::vector<SourceText> found;

 private:
  bool Sees(const char* text) const { return source_.compare(at_, std::strlen(text), text) == 0; }
  void Skip(const char* end) { at_ = std::min(source_.find(end, at_), source_.size()); }

  void Take() {
    if (Sees("//")) return Skip("\n");
    if (Sees("/*")) return Skip("*/");
    if (Sees("R\"(")) {
      const std::size_t begin = at_ + 3;
      Skip(")\"");
      open_ = true;
      text_ += source_.substr(begin, at_ - begin);
      at_ += 2;
    } else if (Sees("\"") || (Sees("'") && !std::isxdigit(source_[at_ - 1]))) {
      Quoted(source_[at_] == '"');
    } else if (!std::isspace(static_cast<unsigned char>(source_[at_++]))) {
      Close();
    }
  }
  void Quoted(bool is_string) {
    const char quote = source_[at_++];
    for (; source_.at(at_) != quote; ++at_) {
      if (source_[at_] == '\\') ++at_;
      if (is_string) text_ += source_[at_];
    }
    ++at_;
    open_ = is_string;
  }
  void Close() {
    if (open_) found.push_back({name_, text_});
    open_ = false;
    text_.clear();
  }

  std::string name_;
  std::string source_;
  std::size_t at_ = 0;
  std::string text_;
  bool open_ = false;
};

std::vector<SourceText> LibraryTexts() {
  std::vector<SourceText> texts;
  for (const auto& entry : fs::recursive_directory_iterator(WEXPOL_SOURCE_DIR "/src/wexpol")) {
    const std::string kind = entry.path().extension().string();
    if (kind != ".cpp" && kind != ".h") continue;
    const auto found = Strings(entry.path()).found;
    texts.insert(texts.end(), found.begin(), found.end());
  }
  return texts;
}

// This one has a value too many, which is meant: it never inserts.
bool IsMeantToFail(std::string_view text) { return text.starts_with("INSERT INTO proxy_ports("); }

// Those that begin as the type of statement texts demands of a literal. What ends in a blank is the
// front of a text that is put together at run time.
std::vector<SourceText> Statements() {
  std::vector<SourceText> statements;
  for (const SourceText& each : LibraryTexts()) {
    for (const char* word : {"SELECT ", "INSERT ", "UPDATE ", "DELETE ", "PRAGMA ", "BEGIN",
                             "COMMIT", "ROLLBACK", "SAVEPOINT ", "RELEASE "}) {
      // The engine's own list of tables is no table of ours; a word alone is no statement.
      const bool is_ours = each.text.find("sqlite_schema") == std::string::npos &&
                           !(each.text == word && each.text.back() == ' ');
      const bool begins = each.text.rfind(word, 0) == 0 && is_ours;
      if (begins && each.where != "statement.h" && !IsMeantToFail(each.text)) {
        statements.push_back(each);
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
  const std::set<std::string> kSmall = {"CONSTANT",
                                        "accounts",
                                        "alert_event_types",
                                        "alert_logs",
                                        "alerts_sent",
                                        "appearances",
                                        "auth_logs",
                                        "device_backup_details",
                                        "policies",
                                        "install_invites",
                                        "login_details",
                                        "logins",
                                        "sqlite_schema",
                                        "nxb_av_settings",
                                        "service_configurations",
                                        "device_backup_statistics",
                                        "premium_remote_control_settings"};
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
    sqlite3_stmt* plan = nullptr;
    sqlite3_prepare_v2(handle(), ("EXPLAIN QUERY PLAN " + text).c_str(), -1, &plan, nullptr);
    while (sqlite3_step(plan) == SQLITE_ROW) {
      std::string step = reinterpret_cast<const char*>(sqlite3_column_text(plan, 3));
      if (step.rfind("SCAN ", 0) != 0) continue;
      step = step.substr(5, step.find(' ', 5) - 5);
      EXPECT_TRUE(kSmall.count(step)) << where << " scans " << step << ": " << text;
    }
    sqlite3_finalize(plan);
  }
}

// Every select, on tables full of few different values, answers the same rows in the same order
// with and without the indexes.
TEST_F(StatementTextTest, NoIndexChangesAnAnswer) {
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
    std::map<std::string, std::string> found;
    for (const auto& [where, text] : Statements()) {
      if (text.rfind("SELECT ", 0) != 0 || text.back() == ' ') continue;
      sqlite3_stmt* select = nullptr;
      sqlite3_prepare_v2(handle(), text.c_str(), -1, &select, nullptr);
      std::string& rows = found[text];
      for (int value = 1; value < 5; ++value) {
        for (int i = 1; i <= sqlite3_bind_parameter_count(select); ++i) {
          sqlite3_bind_int(select, i, value);
        }
        while (sqlite3_step(select) == SQLITE_ROW) {
          for (int column = 0; column < sqlite3_column_count(select); ++column) {
            const auto* cell = sqlite3_column_text(select, column);
            rows += (cell ? reinterpret_cast<const char*>(cell) : "NULL") + std::string("|");
          }
        }
        sqlite3_reset(select);
      }
      sqlite3_finalize(select);
    }
    return found;
  };
  const auto with = answers();
  for (const std::string& index :
       Rows("SELECT name FROM sqlite_schema WHERE type='index' AND sql IS NOT NULL")) {
    Sql("DROP INDEX " + index);
  }
  EXPECT_EQ(with, answers());
}

}  // namespace
