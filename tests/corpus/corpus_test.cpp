// The console's documents and hostile inputs, where the folder that holds them is there.

#include <gtest/gtest.h>

#include "tests/support/policy_test.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"

namespace {

// Beside the checkout.
const std::string kFolder = WEXPOL_SOURCE_DIR "/../shared/corpus/";

std::string ReadCorpus(const std::string& file) {
  return ReadBytes(wexpol::Utf8ToWide(kFolder + file));
}

class CorpusTest : public PolicyTest {
 protected:
  void SetUp() override {
    if (!index_.Parse(ReadCorpus("hostile/index.json").c_str())) GTEST_SKIP() << "no corpus";
  }

  std::string Count(const std::string& table) { return Row("SELECT count(*) FROM " + table); }

  static std::string Text(const rapidjson::Value& line, const char* name) {
    return line[name].GetString();
  }

  wexpol::Document index_;
};

TEST_F(CorpusTest, EveryDocumentIsStoredWhole) {
  ASSERT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  for (const auto& table : wexpolctl::SyncTables()) {
    const std::string json = ReadCorpus(std::string("console/") + table.name() + ".json");
    if (json.empty()) continue;  // Not filled by the console.
    SCOPED_TRACE(table.name());
    wexpol::Document document;
    wexpol::Records records;
    ASSERT_TRUE(document.Parse(json.c_str()));
    ASSERT_TRUE(wexpol::FindRecords(table.record_class->table(), document.root(), records));

    std::string error;
    const bool refuses_all = std::string(table.name()) == "proxy_ports";
    EXPECT_EQ(table.replace(db(), json.c_str(), error), !refuses_all) << error;
    ASSERT_TRUE(db().Transaction(TRANSACTION_COMMIT));
    EXPECT_EQ(Count(table.name()), std::to_string(refuses_all ? 0 : records.count));
    ASSERT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  }
}

TEST_F(CorpusTest, EveryHostileInputDoesWhatItMust) {
  int tried = 0;
  for (const rapidjson::Value& line : index_.root().GetArray()) {
    const std::string json = ReadCorpus("hostile/" + Text(line, "file"));
    const std::string table_name = Text(line, "table");
    SCOPED_TRACE(Text(line, "file") + ": " + Text(line, "why"));
    const std::string expected = Text(line, "expected");
    if (Text(line, "operation") == "record ParseJson") {
      CAppChecksum checksum;
      EXPECT_EQ(ParseText(checksum, json), expected != "rejected");
      ++tried;
      continue;
    }
    const wexpolctl::SyncTable* table = wexpolctl::FindSyncTable(table_name);
    ASSERT_NE(table, nullptr) << table_name;
    ++tried;
    Sql("DELETE FROM " + table_name + "");
    std::string error;
    const bool stored = Text(line, "operation") == "AddOrUpdateInstallInite"
                            ? db().AddOrUpdateInstallInite(json.c_str())
                            : table->replace(db(), json.c_str(), error);
    if (expected == "unspecified") continue;
    EXPECT_EQ(stored, expected != "rejected") << error;
    EXPECT_EQ(Count(table_name), std::to_string(line["rows_after"].GetInt()));
  }
  EXPECT_EQ(tried, 144);
}

}  // namespace
