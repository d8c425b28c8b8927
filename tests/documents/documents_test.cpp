// Whole documents, and what must come of each: those of this folder, and a larger collection where
// the variable WEXPOL_CORPUS names its folder.

#include <cstdlib>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/platform/text.h"

namespace {

class DocumentsTest : public PolicyTest {
 protected:
  static std::string Read(const std::string& path) { return ReadBytes(wexpol::Utf8ToWide(path)); }

  bool Store(const rapidjson::Value& line, const std::string& json, std::string& error) {
    const auto operation = line.FindMember("operation");
    const std::string name = operation == line.MemberEnd() ? "" : operation->value.GetString();
    if (name == "AddOrUpdateInstallInite") return db().AddOrUpdateInstallInite(json.c_str());
    const wexpol::RecordClass& table = *wexpol::FindTable(line["table"].GetString());
    if (name != "record ParseJson") {
      return wexpol::ReplaceTable(handle(), table, json.c_str(), error);
    }
    CAppChecksum checksum;
    EXPECT_STREQ(table.table().name(), "app_checksums");
    return ParseText(checksum, json);
  }

  // The index tells of each file the table, what is expected, and how many rows or which are there
  // afterwards.
  void ExpectWhatTheIndexSays(const std::string& folder) {
    wexpol::Document index;
    ASSERT_TRUE(index.Parse(Read(folder + "/index.json").c_str())) << folder;
    for (const rapidjson::Value& line : index.root().GetArray()) {
      const std::string table = line["table"].GetString(), expected = line["expected"].GetString();
      SCOPED_TRACE(line["file"].GetString());
      Sql("DELETE FROM " + table);
      std::string error;
      const bool stored = Store(line, Read(folder + "/" + line["file"].GetString()), error);
      if (expected == "unspecified") continue;
      EXPECT_EQ(stored, expected != "rejected") << error;
      EXPECT_EQ(Row("SELECT count(*) FROM " + table), std::to_string(line["rows_after"].GetInt()));
      if (!line.HasMember("rows")) continue;
      std::vector<std::string> rows;
      for (const rapidjson::Value& row : line["rows"].GetArray()) rows.push_back(row.GetString());
      EXPECT_EQ(Rows("SELECT * FROM " + table), rows);
    }
  }
};

TEST_F(DocumentsTest, OfThisFolder) {
  ExpectWhatTheIndexSays(WEXPOL_SOURCE_DIR "/tests/documents");
}

class CorpusTest : public DocumentsTest {
 protected:
  void SetUp() override {
    if (folder_.empty()) GTEST_SKIP() << "WEXPOL_CORPUS names no folder";
  }

  const std::string folder_ = std::getenv("WEXPOL_CORPUS") ? std::getenv("WEXPOL_CORPUS") : "";
};

TEST_F(CorpusTest, HostileInputs) { ExpectWhatTheIndexSays(folder_ + "/hostile"); }

TEST_F(CorpusTest, EveryDocumentOfTheConsoleIsStoredWhole) {
  for (const wexpol::RecordClass* table : wexpol::ConsoleTables()) {
    const std::string name = table->table().name();
    SCOPED_TRACE(name);
    wexpol::Document document;
    const std::string json = Read(folder_ + "/console/" + name + ".json");
    ASSERT_TRUE(document.Parse(json.c_str()));
    const rapidjson::Value& root = document.root();
    const bool wrapped = root.IsObject() && root.MemberCount() == 1;
    const rapidjson::Value& records = wrapped ? root.MemberBegin()->value : root;
    const bool refused = name == "proxy_ports";
    std::string error;
    EXPECT_EQ(wexpol::ReplaceTable(handle(), *table, json.c_str(), error), !refused) << error;
    EXPECT_EQ(Row("SELECT count(*) FROM " + name),
              std::to_string(refused             ? 0
                             : records.IsArray() ? records.Size()
                                                 : 1));
  }
}

}  // namespace
