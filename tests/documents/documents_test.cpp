// Documents, and what must come of each: those that the index of this folder holds or names, and a
// larger collection where the variable WEXPOL_CORPUS names its folder.

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdlib>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"

namespace {

using wexpol::RecordClass;
using Lines = std::vector<std::string>;

class DocumentsTest : public PolicyTest {
 protected:
  static std::string Read(const std::string& path) { return ReadBytes(wexpol::Utf8ToWide(path)); }

  static std::string Text(const rapidjson::Value& line, const char* member) {
    return line.HasMember(member) ? line[member].GetString() : "";
  }
  static Lines Texts(const rapidjson::Value& array) {
    Lines texts;
    for (const rapidjson::Value& text : array.GetArray()) texts.push_back(text.GetString());
    return texts;
  }

  // It is in a file, a text of the line, or a part of the index.
  static std::string DocumentOf(const rapidjson::Value& line, const std::string& folder) {
    if (line.HasMember("file")) return Read(folder + '/' + Text(line, "file"));
    if (line.HasMember("text")) return Text(line, "text");
    rapidjson::StringBuffer out;
    rapidjson::Writer<rapidjson::StringBuffer> writer(out);
    line["document"].Accept(writer);
    return out.GetString();
  }

  bool Store(const rapidjson::Value& line, sqlite3* db, const std::string& json,
             std::string& error) {
    const RecordClass& table = *wexpol::FindTable(Text(line, "table"));
    const std::string operation = Text(line, "operation");
    if (operation == "AddOrUpdateInstallInite") {
      return this->db().AddOrUpdateInstallInite(json.c_str());
    }
    if (operation != "record ParseJson") return ReplaceTable(db, table, json.c_str(), error);
    CAppChecksum checksum;
    EXPECT_STREQ(table.table().name(), "app_checksums");
    return ParseText(checksum, json);
  }

  // The stored rows as records, and the records of the document as they are parsed, as JSON.
  Lines Generated(const RecordClass& each, const std::string& json) {
    Lines stored, parsed;
    const auto generate = [&each](Lines& lines, auto&& fill) {
      void* record = each.create();
      fill(record);
      wexpol::GenerateRow(each.table(), each.row(record), lines.emplace_back());
      each.destroy(record);
    };
    wexpol::Statement select(handle(), each.table().select());
    while (select.StepRow()) {
      generate(stored, [&](void* record) {
        wexpol::CopyRow(each.table(), each.row(record), select.get());
      });
    }
    wexpol::Document document;
    wexpol::Records records;
    EXPECT_TRUE(document.Parse(json.c_str()));
    EXPECT_TRUE(FindRecords(each.table(), document.root(), records));
    for (std::size_t i = 0; i < records.count; ++i) {
      generate(parsed, [&](void* record) { EXPECT_TRUE(each.parse(record, records.first[i])); });
    }
    EXPECT_EQ(stored, parsed);
    return stored;
  }

  // The index tells of each document the table, whether it is stored and with which error, the rows
  // or how many are there afterwards, and the records as JSON. Both the connection that takes a
  // document whole and one that takes its records one by one do the same.
  void ExpectWhatTheIndexSays(const std::string& folder) {
    wexpol::Document index;
    ASSERT_TRUE(index.Parse(Read(folder + "/index.json").c_str())) << folder;
    for (const rapidjson::Value& line : index.root().GetArray()) {
      const std::string table = Text(line, "table"), json = DocumentOf(line, folder);
      if (Text(line, "expected") == "unspecified") continue;
      for (sqlite3* connection : {handle(), wexpol::HandleOf(db())}) {
        SCOPED_TRACE(Text(line, "file") + json.substr(0, 80));
        Sql("DELETE FROM " + table);
        std::string error;
        EXPECT_EQ(Store(line, connection, json, error), Text(line, "expected") != "rejected");
        if (line.HasMember("error")) {
          EXPECT_EQ(error, Text(line, "error"));
        }
        if (line.HasMember("rows_after")) {
          EXPECT_EQ(Row("SELECT count(*) FROM " + table),
                    std::to_string(line["rows_after"].GetInt()));
        }
        if (!line.HasMember("rows")) continue;
        const std::string columns = line.HasMember("columns") ? Text(line, "columns") : "*";
        EXPECT_EQ(Rows("SELECT " + columns + " FROM " + table), Texts(line["rows"]));
        if (!line.HasMember("json")) continue;
        EXPECT_EQ(Generated(*wexpol::FindTable(table), json), Texts(line["json"]));
      }
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
  for (const RecordClass* table : wexpol::ConsoleTables()) {
    const std::string name = table->table().name();
    SCOPED_TRACE(name);
    wexpol::Document document;
    wexpol::Records records;
    const std::string json = Read(folder_ + "/console/" + name + ".json");
    ASSERT_TRUE(document.Parse(json.c_str()));
    ASSERT_TRUE(FindRecords(table->table(), document.root(), records));
    const bool refused = name == "proxy_ports";
    std::string error;
    EXPECT_EQ(ReplaceTable(handle(), *table, json.c_str(), error), !refused) << error;
    EXPECT_EQ(Row("SELECT count(*) FROM " + name), std::to_string(refused ? 0 : records.count));
  }
}

}  // namespace
