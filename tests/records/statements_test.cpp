// The statement texts of the library: that the engine understands every one of them.

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"

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

class StatementTextTest : public PolicyTest {
 protected:
  void ExpectUnderstood(const std::string& text, const std::string& where) {
    sqlite3_stmt* statement = nullptr;
    const char* rest = "";
    EXPECT_EQ(sqlite3_prepare_v2(handle(), text.c_str(), -1, &statement, &rest), SQLITE_OK)
        << where << ": " << text << ": " << sqlite3_errmsg(handle());
    EXPECT_STREQ(rest, "") << where;
    EXPECT_NE(statement, nullptr) << where;
    sqlite3_finalize(statement);
  }
};

// A statement is a literal that begins as the type of statement texts demands, or made by a table.
// What ends in a blank is the front of a text that is put together at run time; those are listed.
TEST_F(StatementTextTest, TheEngineUnderstandsEveryOne) {
  std::multiset<std::string> fronts;
  int statements = 0;
  for (const auto& [where, text] : LibraryTexts()) {
    bool begins = false;
    for (const char* word : {"SELECT ", "INSERT ", "UPDATE ", "DELETE ", "PRAGMA ", "BEGIN",
                             "COMMIT", "ROLLBACK", "SAVEPOINT ", "RELEASE "}) {
      begins = begins || (text.rfind(word, 0) == 0 && text != word);
    }
    if (where == "statement.h" || !begins) continue;
    if (IsMeantToFail(text)) continue;
    if (text.back() == ' ') {
      fronts.insert(text);
    } else {
      ExpectUnderstood(text, where);
      ++statements;
    }
  }
  EXPECT_GT(statements, 80);
  EXPECT_EQ(fronts, (std::multiset<std::string>{"DELETE FROM ", "INSERT INTO ",
                                                "SELECT max(row_version) FROM ",
                                                "UPDATE device_services SET "}));
}

TEST_F(StatementTextTest, TheEngineUnderstandsThoseOfEveryTable) {
  for (const wexpol::RecordClass* each : wexpol::AllTables()) {
    const wexpol::Table& table = each->table();
    for (const wexpol::Sql sql : {table.insert(), table.select(), table.clear(),
                                  table.select_by_key(), table.delete_by_key()}) {
      if (IsMeantToFail(sql.text())) continue;
      ExpectUnderstood(sql.text(), table.name());
    }
  }
}

}  // namespace
