// The companion tool, one command line after the other on a folder of its own.

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <set>
#include <sstream>

#include "tests/support/test_environment.h"
#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/run.h"
#include "tools/wexpolctl/secrets.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"

namespace {

using wexpolctl::Database;
using Strings = std::vector<std::string>;

constexpr char kSamples[] = WEXPOL_SOURCE_DIR "/samples/console";

struct Outcome {
  int code;
  std::string out;
  std::string err;
};

bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

class WexpolctlTest : public ::testing::Test {
 protected:
  static Outcome Run(const Strings& args) {
    std::ostringstream out;
    std::ostringstream err;
    const int code = wexpolctl::Run(args, out, err);
    return {code, out.str(), err.str()};
  }

  // Words divided by blanks.
  static Outcome RunLine(const std::string& line) {
    std::istringstream words(line);
    return Run(Strings(std::istream_iterator<std::string>(words), {}));
  }

  // The same with --json; what comes must be one object.
  static rapidjson::Document Json(const Strings& args) {
    Strings all = args;
    all.emplace_back("--json");
    const Outcome outcome = Run(all);
    rapidjson::Document document;
    // The reader may look at 16 bytes past the end.
    document.Parse((outcome.out + std::string(16, '\0')).c_str());
    EXPECT_TRUE(!document.HasParseError() && document.IsObject()) << outcome.out << outcome.err;
    if (!document.IsObject()) document.SetObject();
    return document;
  }

  // "a|b|c" of the rows of a listing: what is at `column` of each.
  static std::string Cells(const rapidjson::Document& report, const char* listing,
                           const char* column) {
    std::string cells;
    if (!report.HasMember(listing)) return "no listing";
    for (const auto& row : report[listing].GetArray()) {
      const auto& cell = row[column];
      if (!cells.empty()) cells += '|';
      cells += cell.IsString() ? cell.GetString()
               : cell.IsNull() ? "null"
               : cell.IsBool() ? (cell.GetBool() ? "true" : "false")
                               : std::to_string(cell.GetInt64());
    }
    return cells;
  }

  // A file in the folder "documents"; answers its path.
  std::string Write(const std::string& name, const std::string& text) {
    const auto folder = std::filesystem::path(environment_.folder()) / "documents";
    std::filesystem::create_directories(folder);
    WriteBytes((folder / name).wstring(), text);
    return (folder / name).string();
  }

  void Provision() {
    ASSERT_EQ(RunLine("init").code, 0);
    const Outcome sync = Run({"sync", kSamples});
    ASSERT_EQ(sync.code, 0) << sync.err;
  }

  std::int64_t Rows(const std::string& table) {
    return wexpolctl::CountRows(Database(path()).handle(), table).value_or(-1);
  }
  void Sql(const std::string& statements) {
    sqlite3* db = wexpol::OpenKeyed(path(), SQLITE_OPEN_READWRITE);
    EXPECT_EQ(sqlite3_exec(db, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(db);
    sqlite3_close(db);
  }

  void FlipByte(const std::wstring& file, double where) {
    std::string bytes = ReadBytes(file);
    char& byte = bytes[static_cast<std::size_t>(where * static_cast<double>(bytes.size()))];
    byte = static_cast<char>(byte ^ 0x40);
    WriteBytes(file, bytes);
  }

  std::wstring path() const { return CFilePaths::GetLocationDB(); }
  std::wstring backup() const { return CFilePaths::GetLocationBackupDB(); }

  TestEnvironment environment_;
};

TEST_F(WexpolctlTest, InitMakesTheFileOnceAndReplacesItOnlyByForce) {
  const Outcome missing = RunLine("status");
  EXPECT_EQ(missing.code, 3);
  EXPECT_TRUE(Holds(missing.err, "wexpolctl init")) << missing.err;
  EXPECT_TRUE(Holds(missing.out, "backup age")) << "what can be told is told";

  Provision();
  EXPECT_TRUE(Holds(RunLine("status").out, "wal"));
  EXPECT_EQ(RunLine("init").code, 1);
  EXPECT_EQ(Rows("devices"), 3);
  EXPECT_EQ(RunLine("init --force").code, 0);
  EXPECT_EQ(Rows("devices"), 0);

  const std::string elsewhere = Write("x", "") + ".folder/other.db";
  EXPECT_EQ(Run({"--db", elsewhere, "init"}).code, 0);
  EXPECT_EQ(Run({"--db", elsewhere, "tables"}).code, 0);
  EXPECT_EQ(Run({"status", "--root", wexpol::WideToUtf8(environment_.folder())}).code, 0);
}

TEST_F(WexpolctlTest, SamplesFillEveryTableOfTheConsole) {
  ASSERT_EQ(RunLine("init").code, 0);
  const auto report = Json({"sync", kSamples});
  std::string expected;
  for (const auto& table : wexpolctl::SyncTables()) {
    expected += (expected.empty() ? "" : "|") + std::string(table.name());
  }
  EXPECT_EQ(wexpolctl::SyncTables().size(), 45u);
  EXPECT_EQ(Cells(report, "tables", "table"), expected);
  EXPECT_FALSE(Holds(Cells(report, "tables", "result"), "refused"));
  EXPECT_TRUE(Holds(RunLine("list devices").out, "Drucker hängt am Gerät"));

  Sql("DROP TABLE nics");
  const Outcome tables = RunLine("tables");
  EXPECT_EQ(tables.code, 1);
  EXPECT_TRUE(Holds(tables.err, "nics"));
  Sql("DROP INDEX app_files_by_name; DROP TRIGGER policy_services_policy_insert; ALTER TABLE apps "
      "RENAME "
      "COLUMN name TO title; DROP VIEW remote_control_settings");
  const std::string doctor = RunLine("doctor --json").out;
  for (const char* piece :
       {"the table nics is missing", "the trigger policy_services_policy_insert is",
        "the table apps is of another make", "the view remote_control_settings"}) {
    EXPECT_TRUE(Holds(doctor, piece)) << piece << doctor;
  }
}

TEST_F(WexpolctlTest, SyncFindsTheDocumentsThatAreNamed) {
  Provision();
  const std::string odd = Write("answer.json", R"([{"id": 5}, {"id": 6}])");
  Write("logins.json", R"({"login": {"id": 7}})");
  Write("nics.json", "[]");
  const std::string folder = std::filesystem::path(odd).parent_path().string();
  const struct {
    Strings args;
    int code;
    std::string tables;  // Else a piece of the error.
  } kCases[] = {
      {{folder}, 0, "nics|logins"},
      {{"logins", folder}, 0, "logins"},
      {{folder + "/nics.json"}, 0, "nics"},
      {{"networks", odd}, 0, "networks"},
      {{"login_details", "nics", folder + "/logins.json"}, 0, "logins"},
      {{"logins", folder, kSamples}, 2, "two documents for logins"},
      {{odd}, 2, "wexpolctl sync TABLE FILE"},
      {{"devices", folder}, 2, "no document"},
      {{folder + "/devices.json"}, 3, "cannot be read"},
      {{"auth_logs"}, 2, "fills the table"},
      {{"nics", "logins"}, 2, "Several tables"},
  };
  for (const auto& test : kCases) {
    Strings args = {"sync"};
    args.insert(args.end(), test.args.begin(), test.args.end());
    SCOPED_TRACE(testing::PrintToString(args));
    const Outcome outcome = Run(args);
    EXPECT_EQ(outcome.code, test.code) << outcome.err;
    if (test.code == 0) {
      EXPECT_EQ(Cells(Json(args), "tables", "table"), test.tables);
    } else {
      EXPECT_TRUE(Holds(outcome.err, test.tables)) << outcome.err;
    }
  }
  EXPECT_TRUE(Holds(Run({"sync", folder}).out, "answer.json is named after no table"));
  EXPECT_EQ(Rows("networks"), 2);

  std::istringstream input(R"([{"id": 1}])");
  std::streambuf* former = std::cin.rdbuf(input.rdbuf());
  EXPECT_EQ(RunLine("sync networks").code, 0);
  std::cin.rdbuf(former);
  EXPECT_EQ(Rows("networks"), 1);
}

TEST_F(WexpolctlTest, RefusalNamesTheRecordAndTakesEverythingBack) {
  Provision();
  Write("accounts.json", R"({"id": 9, "locale_id": 1033})");
  const struct {
    const char* table;
    std::string text;
    std::int64_t record;  // 0: the whole document.
    const char* reason;
  } kCases[] = {
      {"logins", R"([{"id": 1}, {"id": 2}, {"id": 1}])", 3, "UNIQUE constraint failed: logins.id"},
      {"logins", R"([{"id": 1}, {"name": "x"}])", 2, "the key \"id\" is missing"},
      {"logins", R"([{"id": "1"}])", 1, "the value of \"id\" is not of its type"},
      {"nics", R"([{"id": 1, "mac": "0123456789ab"}, {"id": 2, "mac": "01"}])", 2, "\"mac\""},
      {"logins", R"([{"id": 1}, 2])", 2, "it is no object"},
      {"logins", "[{\"id\": 1},\n  {\"id\" 2}]", 0, "(line 2, column 9)"},
      {"logins", "7", 0, "neither a record nor an array"},
      {"logins", std::string("[]\0[]", 5), 0, "zero byte"},
      {"logins", "\xEF\xBB\xBF[]", 0, "byte-order mark"},
      {"logins", std::string("\xFF\xFE[\0]\0", 6), 0, "UTF-16"},
      {"logins", std::string("[\0]\0", 4), 0, "UTF-16"},
      {"global_configurations", R"([{"id": 1}, {"id": 65537}])", 2, "16 bits, as 1"},
  };
  for (const auto& test : kCases) {
    SCOPED_TRACE(test.text);
    const std::string file = Write(std::string(test.table) + ".json", test.text);
    const std::string folder = std::filesystem::path(file).parent_path().string();
    const Outcome outcome = Run({"sync", folder});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_TRUE(Holds(outcome.err, test.reason)) << outcome.err;
    EXPECT_TRUE(Holds(outcome.err, "Nothing was stored."));

    const auto report = Json({"sync", folder});
    EXPECT_EQ(Cells(report, "tables", "result"), "taken back|refused");
    EXPECT_EQ(Cells(report, "refusals", "record"),
              test.record ? std::to_string(test.record) : "null");
    EXPECT_EQ(Cells(Json({"list", "accounts"}), "rows", "id"), "31007");
    EXPECT_EQ(Rows("logins") * 10 + Rows("nics"), 33);
    std::filesystem::remove(file);
  }
  Write("logins.json", R"([{"id": 1}, {}])");
  const std::string folder =
      std::filesystem::path(Write("networks.json", "[]")).parent_path().string();
  const auto report = Json({"sync", folder, "--keep-going"});
  EXPECT_EQ(Cells(report, "tables", "result"), "stored|stored|refused");
  EXPECT_STREQ(report["refusals"][0]["error_object"]["desc"].GetString(), "Error parsing json");
  EXPECT_EQ(Rows("networks"), 0);
  EXPECT_EQ(Rows("logins"), 3);
  EXPECT_EQ(Cells(Json({"list", "accounts"}), "rows", "id"), "9");
}

TEST_F(WexpolctlTest, ListSelectsRowsAndKeepsTheTerminalSafe) {
  Provision();
  const struct {
    Strings args;
    std::string ids;
  } kCases[] = {
      {{"logins"}, "9001|9002|9003"},
      {{"logins", "--limit", "2"}, "9001|9002"},
      {{"logins", "--where", "device_id=70001", "--where", "policy_id=502"}, "9002"},
      {{"logins", "--where", "policy_id=NULL"}, "9003"},
      {{"logins", "--where", "name=OFFICE\\anna"}, "9001"},
      {{"logins", "--where", "name=' OR 1 --"}, ""},
      {{"nics", "--where", "mac=0200a1b2c302"}, "2"},
      {{"remote_control_settings"}, "1"},
  };
  for (const auto& test : kCases) {
    Strings args = {"list"};
    args.insert(args.end(), test.args.begin(), test.args.end());
    EXPECT_EQ(Cells(Json(args), "rows", "id"), test.ids) << testing::PrintToString(args);
  }
  Sql("UPDATE logins SET description=char(27)||'[2J'||char(10), comment=x'ff' WHERE id=9001");
  const Outcome narrow = RunLine("list logins --where id=9001");
  EXPECT_TRUE(Holds(narrow.out, "\\x1b[2J\\n")) << narrow.out;
  EXPECT_FALSE(Holds(narrow.out, "\x1b"));
  EXPECT_TRUE(
      Holds(RunLine("list devices --limit 1").out, "\nname                      FRONT-01\n"))
      << "wide rows are printed as blocks";
  EXPECT_TRUE(Holds(RunLine("list networks").out, "id  account_id  wan_ip\n71"));
}

// Whatever a column or a configuration value with a secret's name holds, no command shows it.
TEST_F(WexpolctlTest, SecretsAreNeverPrinted) {
  Provision();
  constexpr char kSecret[] = "s3cr3t";
  std::int64_t masked = 0;
  {
    Database database(path());
    wexpol::Statement columns(
        database.handle(),
        "SELECT t.name, c.name, c.type='TEXT' AND (c.name LIKE '%token%' OR c.name LIKE "
        "'%password%' OR c.name LIKE '%license%' OR c.name IN ('public_key', 'link')) FROM "
        "sqlite_schema t JOIN pragma_table_info(t.name) c WHERE t.type='table'");
    while (columns.StepRow()) {
      const std::string table = columns.Text(0);
      const std::string column = columns.Text(1);
      EXPECT_EQ(wexpolctl::IsSecretColumn(column), columns.Int(2) != 0) << table << '.' << column;
      if (columns.Int(2) == 0) continue;
      Sql("UPDATE " + table + " SET " + column + "='s3cr3t'");
      masked += wexpolctl::CountRows(database.handle(), table).value_or(0);
    }
  }
  Sql("UPDATE service_configurations SET value='s3cr3t' WHERE key LIKE '%token'");
  EXPECT_GT(masked, 15);

  const std::string bad = Write(
      "policies.json",
      R"([{"id": 1, "override_password": "s3cr3t"}, {"id": 1, "uninstall_password": "s3cr3t"}])");
  std::vector<Strings> lines = {{"sync", bad},
                                {"sync", "logins", Write("l.json", R"(["s3cr3t", s3cr3t])")},
                                {"list", "devices", "--where", "token=s3cr3t"},
                                {"list", "devices", "--where", "Token=s3cr3t"},
                                {"explain", "--file", "patience.exe", "--login", "9001"},
                                {"config", "get", "category_server_token"},
                                {"filter", "check", "News"},
                                {"diff", bad},
                                {"explain", "--category", "News"}};
  for (const char* plain : {"status", "tables", "versions", "check", "identity", "services",
                            "options", "alerts", "next-scan", "time", "doctor"}) {
    lines.push_back({plain});
  }
  lines.push_back({"config", "list"});
  for (const std::string& table : wexpolctl::TableNames(Database(path()).handle())) {
    lines.push_back({"list", table});
  }
  std::int64_t masks = 0;
  for (Strings& line : lines) {
    for (const bool json : {false, true}) {
      if (json) line.emplace_back("--json");
      const Outcome outcome = Run(line);
      EXPECT_FALSE(Holds(outcome.out + outcome.err, kSecret)) << testing::PrintToString(line);
      if (!json || line[0] != "list") continue;
      for (std::size_t at = 0; (at = outcome.out.find(wexpolctl::kMask, at)) != std::string::npos;
           at += wexpolctl::kMask.size()) {
        ++masks;
      }
    }
  }
  EXPECT_EQ(masks, masked + 1) << "each secret leaves its mask, the configuration value too";
}

TEST_F(WexpolctlTest, EveryCommandFailsInOneSentenceAndInJson) {
  const std::set<std::string> kNeedNoDatabase = {"init", "bundle", "export", "completion", "watch"};
  for (const auto& make : wexpolctl::kCommands) {
    const wexpolctl::Command command = make();
    if (kNeedNoDatabase.contains(command.name)) continue;
    std::istringstream words(command.name);
    Strings args(std::istream_iterator<std::string>(words), {});
    for (const auto& option : command.options) {
      if (option.required) args.emplace_back(option.name[0] == 'D' ? kSamples : "x");
    }
    if (args[0] == "explain") args.insert(args.end(), {"--file", "x"});
    SCOPED_TRACE(command.name);
    const Outcome outcome = Run(args);
    EXPECT_EQ(outcome.code, args[0] == "doctor" ? 1 : 3) << outcome.err;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    const auto report = Json(args);
    EXPECT_TRUE(report.HasMember("error") && report.HasMember("next"));
  }
  const char* kWrong[] = {"",
                          "nonsense",
                          "list",
                          "status x",
                          "list a --limit x",
                          "config",
                          "config get",
                          "explain",
                          "explain --md5 0123",
                          "list a --limit 0x10",
                          "explain --file a --login 4294976297",
                          "list a --limit -1",
                          "list a --limit 18446744073709551616",
                          "status --db=",
                          "init --read-only"};
  for (const char* line : kWrong) {
    const Outcome outcome = RunLine(line);
    EXPECT_EQ(outcome.code, 2) << line;
    EXPECT_EQ(outcome.out, "") << line;
    EXPECT_FALSE(outcome.err.empty()) << line;
  }
  EXPECT_EQ(Run({"status", "--db", ""}).code, 2);
  EXPECT_TRUE(Holds(RunLine("statsu").err, "did you mean 'status'?"));
  EXPECT_TRUE(Holds(RunLine("--help").out, "config"));
  EXPECT_TRUE(Holds(RunLine("list --help").out, "--where COLUMN=VALUE"));
  EXPECT_TRUE(RunLine("--version").out.starts_with("wexpolctl "));
}

TEST_F(WexpolctlTest, BackupTakesTheFilesPlaceAndNothingIsLostOnTheWay) {
  Provision();
  EXPECT_EQ(RunLine("restore").code, 3) << "there is no backup yet";
  ASSERT_EQ(RunLine("backup").code, 0);
  ASSERT_TRUE(wexpol::FileExists(backup()));
  Sql("DELETE FROM devices");
  WriteBytes(path() + L"-wal", "left by a killed process");
  ASSERT_EQ(RunLine("restore").code, 0);
  EXPECT_EQ(ReadBytes(path() + L".replaced-wal"), "left by a killed process");
  EXPECT_EQ(Rows("devices"), 3);
  EXPECT_TRUE(Database(path() + L".replaced").session().CheckIntegrity());

  FlipByte(path(), 0.5);
  EXPECT_EQ(RunLine("check").code, 1);
  EXPECT_EQ(RunLine("backup").code, 1);
  ASSERT_EQ(RunLine("restore").code, 0);
  const std::string good = ReadBytes(backup());
  Sql("PRAGMA writable_schema=ON; UPDATE sqlite_schema SET rootpage=(SELECT rootpage FROM "
      "sqlite_schema WHERE name='nics') WHERE name='logins'");
  EXPECT_EQ(RunLine("backup").code, 1) << "a malformed file must not replace a good backup";
  EXPECT_EQ(ReadBytes(backup()), good);
  EXPECT_TRUE(Holds(RunLine("doctor").out, "doctor --repair"));
  const Outcome repaired = RunLine("doctor --repair");
  EXPECT_TRUE(Holds(repaired.out, "the backup took the file's place")) << repaired.out;
  EXPECT_EQ(RunLine("check").code, 0);
  EXPECT_FALSE(Holds(RunLine("doctor --repair").out, "took")) << "a sound file is left alone";

  FlipByte(path(), 0);
  EXPECT_EQ(RunLine("check").code, 3);
  FlipByte(backup(), 0.3);
  const std::string damaged = ReadBytes(path());
  EXPECT_EQ(RunLine("restore").code, 1);
  EXPECT_EQ(ReadBytes(path()), damaged);
  wexpol::RemoveFile(path());
  EXPECT_TRUE(Holds(RunLine("status").err, "restore"));
  EXPECT_FALSE(wexpol::FileExists(path() + L".new"));
}

TEST_F(WexpolctlTest, NothingTakesTheBackupsPlaceThatIsNoWholeDatabase) {
  Provision();
  ASSERT_EQ(RunLine("backup").code, 0);
  const std::string good = ReadBytes(backup());
  const std::string file = wexpol::WideToUtf8(path());
  EXPECT_EQ(Run({"backup", "--to", file}).code, 2);
  EXPECT_EQ(Run({"restore", "--from", file}).code, 2);
  Sql("DROP TABLE nics");
  EXPECT_EQ(RunLine("backup").code, 1);
  WriteBytes(path(), "");
  EXPECT_EQ(RunLine("backup").code, 3);
  EXPECT_TRUE(ReadBytes(backup()) == good);
  EXPECT_EQ(RunLine("restore").code, 0);
  EXPECT_EQ(RunLine("restore").code, 0);
  EXPECT_EQ(ReadBytes(path() + L".replaced"), "") << "the first one is kept";
  const std::string sound = ReadBytes(path());
  WriteBytes(backup(), "");
  EXPECT_EQ(RunLine("restore").code, 1);
  EXPECT_TRUE(ReadBytes(path()) == sound);
  EXPECT_TRUE(Holds(RunLine("doctor --json").out, "wexpol.bak has no tables"));
}

TEST_F(WexpolctlTest, AdviceLeadsToTheFileThatWasNamed) {
  const std::string copy = Write("a copy.db", "");
  const Outcome outcome = Run({"--db", copy, "check"});
  EXPECT_TRUE(Holds(outcome.err, "'wexpolctl --db \"" + copy + "\" init --force'")) << outcome.err;
  EXPECT_EQ(Run({"--db", std::filesystem::path(copy).parent_path().string(), "init"}).code, 2);
}

TEST_F(WexpolctlTest, DoctorTellsAnOldBackup) {
  Provision();
  CDeviceInfo::WriteDeviceID(70001);
  ASSERT_EQ(RunLine("backup").code, 0);
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
  environment_.clock().SetUtc(seconds + 6 * 86400);
  const Outcome well = RunLine("doctor");
  EXPECT_EQ(well.code, 0) << well.out;
  environment_.clock().Advance(2 * 86400);
  EXPECT_TRUE(Holds(RunLine("doctor").out, "no    8 d 0 h old, sound"));
  EXPECT_TRUE(Holds(RunLine("status").out, "backup age            8 d 0 h"));
}

TEST_F(WexpolctlTest, IdentityNamesTheCredentialAndStoresNothing) {
  Provision();
  auto report = Json({"identity"});
  EXPECT_EQ(report["device_id"].GetInt(), 70001);
  EXPECT_TRUE(report["stored_id"].IsNull());
  EXPECT_STREQ(report["credential"].GetString(), "X-Device-Token");
  long id;
  EXPECT_FALSE(CDeviceInfo::GetDeviceID(&id));

  CDeviceInfo::WriteDeviceID(70002);
  report = Json({"identity"});
  EXPECT_STREQ(report["name"].GetString(), "SERVER-01");
  EXPECT_STREQ(report["credential"].GetString(), "X-Invite-Token");
  CDeviceInfo::WriteDeviceID(5);
  EXPECT_EQ(RunLine("identity").code, 1);
}

TEST_F(WexpolctlTest, ExplainFollowsTheDecisionAndLearnsNothing) {
  Provision();
  Sql("INSERT INTO app_checksums(app_id,md5,control_flag) VALUES"
      "(1,x'000102030405060708090a0b0c0d0e0f',1),(2,x'ffffffffffffffffffffffffffffffff',2)");
  const std::string blocked = "000102030405060708090A0B0C0D0E0F";
  const std::string monitored = "ffffffffffffffffffffffffffffffff";
  const std::string fresh = "11111111111111111111111111111111";
  const struct {
    Strings args;
    const char* decision;
    const char* last;  // The rule set, row and app of the last step.
    bool learns;
  } kCases[] = {
      {{"--file", "patience.exe", "--login", "9001", "--md5", fresh},
       "blocked by its name",
       "41|1|1",
       true},
      {{"--file", "patience.exe", "--login", "9001", "--md5", blocked},
       "blocked by its name",
       "41|1|1",
       false},
      {{"--file", "renamed.exe", "--login", "9001", "--md5", blocked},
       "blocked by its digest",
       "41|1|1",
       false},
      {{"--file", "remote.exe", "--md5", fresh}, "monitored by its name", "0|0|2", true},
      {{"--md5", monitored}, "monitored by its digest", "0|0|2", false},
      {{"--file", "writer.exe", "--login", "9002"},
       "neither blocked nor monitored",
       "null|null|null",
       false},
      {{"--file", "other.exe", "--login", "9001"},
       "unknown: neither blocked nor monitored",
       "null|null|null",
       false},
  };
  for (const auto& test : kCases) {
    Strings args = {"explain"};
    args.insert(args.end(), test.args.begin(), test.args.end());
    SCOPED_TRACE(testing::PrintToString(args));
    const auto report = Json(args);
    EXPECT_STREQ(report["decision"].GetString(), test.decision);
    EXPECT_EQ(report["agent_would_learn_the_digest"].GetBool(), test.learns);
    std::string last;
    for (const char* column : {"rule_set", "row", "app"}) {
      const std::string cells = Cells(report, "steps", column);
      last += (last.empty() ? "" : "|") + cells.substr(cells.rfind('|') + 1);
    }
    EXPECT_EQ(last, test.last);
  }
  EXPECT_EQ(Rows("app_checksums"), 2);
}

TEST_F(WexpolctlTest, AnswersAreThoseOfTheAgent) {
  Provision();
  CDeviceInfo::WriteDeviceID(70001);
  Database database(path());
  CPolicyDB& session = database.session();
  session.SetServiceStatus(4, 3);
  session.IncrementServiceInstallAttempts(4);
  const auto services = Json({"services"});
  EXPECT_EQ(Cells(services, "services", "id"), "1|2|3|4|6");
  EXPECT_EQ(Cells(services, "services", "installed"), "true|true|false|false|true");
  EXPECT_EQ(Cells(services, "services", "enabled"), "true|false|false|true|true");
  EXPECT_EQ(Cells(services, "services", "install_needed"), "false|false|false|true|false");
  EXPECT_EQ(Cells(services, "services", "installs_left"), "null|null|null|2|null");
  EXPECT_TRUE(
      RunLine("options").out.starts_with("opt_web_guard=1\nopt_firewall=1\nopt_mail_guard=0\n"));

  const struct {
    const char* line;
    int code;
    const char* piece;
  } kConfig[] = {
      {"config get sb_flow_enabled", 0, "service           1\nvalue             true"},
      {"config get sb_flow_enabled --service 4", 0, "read as a switch  no"},
      {"config get NXB_AV_DOWNLOAD_URL", 0, "https://get.example.net/av/setup.exe"},
      {"config get sb_flow_enabled --service 70000", 2, "from 0 to 32767"},
      {"config get nothing", 1, "config list"},
      {"config list", 0, "Bitte IT fragen."},
      {"filter check Adult Television", 0, "Television   5  yes           no           yes"},
      {"filter check News nix", 1, "'nix'"},
      {"time", 0, "last Sun of month 10 at 03:00"},
      {"versions", 0, "time_zones              2199023255552   901009  present"},
  };
  for (const auto& test : kConfig) {
    const Outcome outcome = RunLine(test.line);
    EXPECT_EQ(outcome.code, test.code) << test.line;
    EXPECT_TRUE(Holds(outcome.out + outcome.err, test.piece)) << test.line << outcome.out;
  }
}

TEST_F(WexpolctlTest, AlertsAndSchedulesAreToldByTheClock) {
  Provision();
  {
    Database database(path(), Database::kWrite);
    CAlertEventType type;
    ASSERT_TRUE(database.session().GetAlertEventType(&type, long{202}));
    EXPECT_EQ(database.session().AddAlertLogBuffer(&type, "found"), 1);
    EXPECT_TRUE(database.session().UpdateAlertCheck(202, true));
  }
  environment_.clock().Advance(600);
  const auto alerts = Json({"alerts"});
  EXPECT_EQ(Cells(alerts, "types", "enabled"), "true|true|true|false");
  EXPECT_EQ(Cells(alerts, "types", "pending"), "0|1|0|0");
  EXPECT_EQ(Cells(alerts, "types", "next_check_in"), "null|1200|null|null");
  EXPECT_EQ(Cells(alerts, "types", "suppressed_until"), "null|1710333000|null|null");
  EXPECT_EQ(Rows("alert_checks"), 1) << "looking starts no timer";

  const Outcome scans = RunLine("next-scan");  // On Wednesday, 13 March 2024, ten past noon.
  EXPECT_TRUE(Holds(scans.out, "every 120 min                0 s ")) << scans.out;
  EXPECT_TRUE(Holds(scans.out, "Mon Thu at 12:30             1 d 0 h   2024-03-14 12:29:59"))
      << scans.out;
  EXPECT_TRUE(Holds(scans.out, "day 1 of the month at 20:00  19 d 7 h  2024-04-01 19:59:59"));
}

}  // namespace
