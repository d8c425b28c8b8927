// The tool's commands that say what is in a database, and what a document would make of it.

#include <gtest/gtest.h>
#include <miniz.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/run.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/document.h"

namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

constexpr char kSamples[] = WEXPOL_SOURCE_DIR "/samples/console";

struct Outcome {
  int code;
  std::string out;  // Of both streams.
};

Outcome Tool(const Strings& args) {
  std::ostringstream out;
  const int code = wexpolctl::Run(args, out, out);
  return {code, out.str()};
}

Outcome RunLine(const std::string& line) {
  std::istringstream words(line);
  return Tool(Strings(std::istream_iterator<std::string>(words), {}));
}

bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

// "a|b|c": one column of a listing of the report, as JSON writes it without quotes.
std::string Cells(Strings args, const char* listing, const char* column) {
  args.insert(args.begin(), "--json");
  const Outcome outcome = Tool(args);
  wexpol::Document report;
  if (!report.Parse(outcome.out.c_str()) || !report.root().HasMember(listing)) return outcome.out;
  std::string cells;
  for (const auto& row : report.root()[listing].GetArray()) {
    const auto& cell = row[column];
    cells += (cells.empty() ? "" : "|") + (cell.IsString()  ? std::string(cell.GetString())
                                           : cell.IsInt64() ? std::to_string(cell.GetInt64())
                                           : cell.IsNull()  ? "null"
                                           : cell.IsTrue()  ? "true"
                                                            : "false");
  }
  return cells;
}

// Does something each time that what was printed is flushed: between two rounds of a command.
class OnFlush : public std::stringbuf {
 public:
  explicit OnFlush(std::function<bool()> action) : action_(std::move(action)) {}

 private:
  int sync() override { return action_() ? 0 : -1; }

  std::function<bool()> action_;
};

class WhatIsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunLine("init").code, 0);
    ASSERT_EQ(Tool({"sync", kSamples}).code, 0);
  }

  std::string PathOf(const std::string& name) const {
    return wexpol::WideToUtf8(environment_.folder()) + "/" + name;
  }
  std::string Write(const std::string& name, const std::string& text) const {
    fs::create_directories(fs::path(PathOf(name)).parent_path());
    WriteBytes(wexpol::Utf8ToWide(PathOf(name)), text);
    return PathOf(name);
  }
  static void Sql(const char* statements) {
    sqlite3* db = wexpol::OpenKeyed(CFilePaths::GetLocationDB(), SQLITE_OPEN_READWRITE);
    EXPECT_EQ(sqlite3_exec(db, statements, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
  }

  TestEnvironment environment_;
};

int AskWhoHasItOpen(const Arguments&) {
  const std::string answer = RunLine("status --json").out;
  const bool told = !wexpol::QueryWindowsVersion() || !Holds(answer, "\"open_elsewhere\": null");
  return !told || Holds(answer, "\"open_elsewhere\": true") ? 0 : 1;
}
const ChildFunction kAskWhoHasItOpen("AskWhoHasItOpen", &AskWhoHasItOpen);

TEST_F(WhatIsTest, StatusTellsWhoElseHasTheFileOpen) {
  EXPECT_TRUE(Holds(RunLine("status --json").out, "\"users\": []"));
  sqlite3* db = wexpol::OpenKeyed(CFilePaths::GetLocationDB(), SQLITE_OPEN_READONLY);
  EXPECT_TRUE(ChildProcess(environment_.folder(), "AskWhoHasItOpen").Succeeded());
  sqlite3_close(db);
}

TEST_F(WhatIsTest, WhatIsExportedComesBackWithEqualHashes) {
  Strings sources = {kSamples};
  if (const char* corpus = std::getenv("WEXPOL_CORPUS")) {
    sources.push_back(std::string(corpus) + "/console");
  }
  for (const std::string& source : sources) {
    SCOPED_TRACE(source);
    const std::string folder = PathOf("out" + std::to_string(source.size()));
    const std::string other = PathOf("other" + std::to_string(source.size()) + ".db");
    ASSERT_EQ(Tool({"sync", source}).code, 0);
    EXPECT_EQ(Tool({"export", "--all", folder}).code, 0);
    EXPECT_EQ(Tool({"export", "--all", folder}).code, 1) << "nothing is overwritten";
    ASSERT_EQ(Tool({"--db", other, "init"}).code, 0);
    ASSERT_EQ(Tool({"--db", other, "sync", folder}).code, 0);
    EXPECT_EQ(Cells({"--db", other, "status"}, "contents", "hash"),
              Cells({"status"}, "contents", "hash"));
    EXPECT_EQ(Tool({"diff", folder}).code, 0);
    const auto rights = fs::status(folder + "/accounts.json").permissions();
    EXPECT_TRUE(wexpol::QueryWindowsVersion() ||
                (rights & fs::perms::all) == (fs::perms::owner_read | fs::perms::owner_write));
  }
  EXPECT_EQ(RunLine("export devices").code, 2);
  EXPECT_EQ(Tool({"export", "auth_logs", PathOf("x")}).code, 2);
}

TEST_F(WhatIsTest, DryRunAndDiffTellTheChangesAndMakeNone) {
  Sql("UPDATE policies SET override_password='s3cr3t' WHERE id=501; PRAGMA wal_checkpoint");
  const std::string file = ReadBytes(CFilePaths::GetLocationDB());
  std::wstring locale;
  const bool had_locale = wexpol::ReadText(wexpol::AgentKey::kAgent, L"LID", &locale);
  Write("new/logins.json", R"([{"id": 9001, "name": "other"}, {"id": 9003}, {"id": 9004}])");
  Write("new/accounts.json", R"([{"id": 1, "locale_id": 1041}])");
  const Strings dry_run = {"sync", PathOf("new"), "--dry-run"};
  EXPECT_EQ(Cells(dry_run, "tables", "result"), "would be stored|would be stored");
  EXPECT_EQ(Cells(dry_run, "tables", "added"), "1|1");
  EXPECT_EQ(Cells(dry_run, "tables", "removed"), "1|1");
  EXPECT_EQ(Cells(dry_run, "tables", "changed"), "0|2");
  const Strings diff = {"diff", PathOf("new/logins.json")};
  EXPECT_EQ(Tool(diff).code, 1);
  EXPECT_TRUE(Holds(Cells(diff, "rows", "row"), "removed")) << Tool(diff).out;
  EXPECT_TRUE(Holds(Cells(diff, "rows", "in_the_document"), "other"));
  EXPECT_TRUE(Holds(Cells(diff, "rows", "key"), "9004"));
  const Strings secret = {"diff", Write("policies.json", R"([{"id": 501}])")};
  EXPECT_TRUE(Holds(Tool(secret).out, "********"));
  EXPECT_FALSE(Holds(Tool(secret).out, "s3cr3t"));
  EXPECT_EQ(ReadBytes(CFilePaths::GetLocationDB()), file);
  std::wstring locale_now;
  EXPECT_EQ(wexpol::ReadText(wexpol::AgentKey::kAgent, L"LID", &locale_now), had_locale);
  EXPECT_EQ(locale_now, locale);
}

TEST_F(WhatIsTest, WholeConsoleFolderIsStoredWithoutTheTableThatRefusesEveryRecord) {
  EXPECT_EQ(Tool({"sync", PathOf("all")}).code, 3) << "there is no such folder";
  Write("all/proxy_ports.json", R"([{"id": 1}])");
  Write("all/Nics.Json", "[]");
  EXPECT_EQ(Cells({"sync", PathOf("all")}, "tables", "result"), "stored|refused as expected");
  EXPECT_EQ(Tool({"sync", PathOf("all")}).code, 0);
  EXPECT_EQ(Tool({"sync", PathOf("all/proxy_ports.json")}).code, 1);
}

TEST_F(WhatIsTest, ExplainTellsWhatDecides) {
  const struct {
    const char* line;
    const char* sql;
    const char* piece;
  } kCases[] = {
      {"--category Adult Television", "", "any of movies and television  yes     Television"},
      {"--category Adult Television", "", "any pornographic              yes     Adult"},
      {"--file C:\\x\\patience.exe --login 5", "", "ask for --file patience.exe"},
      {"--file patience.exe --login 5", "", "There is no login 5"},
      {"--file patience.exe --login 9003", "", "The login 9003 has no policy"},
      {"--alert 202", "", "an alert is sent at once"},
      {"--alert 202", "UPDATE alert_event_types SET threshold_unit_id=1, threshold=3",
       "it is kept: 1 of the 3 occurrences"},
      {"--alert 202", "INSERT INTO alert_checks VALUES(202,1710331100,1)",
       "the time of suppression is not over"},
      {"--alert 202", "UPDATE alert_event_types SET enabled=0", "the type is switched off"},
      {"--schedule 1", "UPDATE av_schedules SET id=-id; INSERT INTO av_schedules(id) VALUES(1)",
       "it has no kind that can run"},
      {"--schedule 1", "UPDATE av_schedules SET days_of_week_available=1, days_of_week=0",
       "no day of the week is set"},
      {"--schedule 1", "UPDATE av_schedules SET days_of_week=8, day_minutes=721",
       "today is one of its days"},
      {"--schedule 1", "UPDATE av_schedules SET day_of_month_available=1, day_of_month=1",
       "its day of this month has passed"},
      {"--schedule 1", "UPDATE av_schedules SET period_available=1", "no last run is known"},
  };
  for (const auto& test : kCases) {
    Sql(test.sql);
    const Outcome outcome = RunLine(std::string("explain ") + test.line);
    EXPECT_TRUE(outcome.code == 0 && Holds(outcome.out, test.piece)) << test.line << outcome.out;
  }
  EXPECT_EQ(RunLine("explain --alert 1 --schedule 1").code, 2);
  EXPECT_EQ(RunLine("explain --alert 5").code, 1);
  Sql("UPDATE av_schedules SET period_available=0, day_minutes=NULL, day_of_month=NULL");
  EXPECT_TRUE(Holds(RunLine("next-scan").out, "an unset day of the month at an unset time"));
}

std::map<std::string, std::string> Unpacked(const std::string& archive) {
  std::map<std::string, std::string> files;
  mz_zip_archive zip = {};
  if (!mz_zip_reader_init_mem(&zip, archive.data(), archive.size(), 0)) return files;
  for (mz_uint i = 0; i < mz_zip_reader_get_num_files(&zip); ++i) {
    mz_zip_archive_file_stat about;
    mz_zip_reader_file_stat(&zip, i, &about);
    std::string& text = files[about.m_filename];
    text.resize(static_cast<std::size_t>(about.m_uncomp_size));
    EXPECT_TRUE(mz_zip_reader_extract_to_mem(&zip, i, text.data(), text.size(), 0));
  }
  mz_zip_reader_end(&zip);
  return files;
}

TEST_F(WhatIsTest, BundleTellsOfEveryFileAndOverwritesNothing) {
  Sql("UPDATE devices SET token='s3cr3t'; UPDATE policies SET override_password='s3cr3t'");
  const std::string good = ReadBytes(CFilePaths::GetLocationDB());
  const struct {
    const char* name;
    std::string bytes;  // Of the file; none for a missing one.
    const char* problem;
  } kMachines[] = {{"sound", good, ""},
                   {"damaged", good.substr(0, good.size() / 2), "tables.txt: "},
                   {"foreign", std::string(5000, 'x'), "schema.sql: "},
                   {"missing", "", "status.txt: There is no database"}};
  for (const auto& machine : kMachines) {
    SCOPED_TRACE(machine.name);
    const std::string db = PathOf(machine.name + std::string(".db")), zip = PathOf(machine.name);
    if (!machine.bytes.empty()) Write(machine.name + std::string(".db"), machine.bytes);
    const Outcome outcome = Tool({"--db", db, "bundle", zip});
    EXPECT_EQ(outcome.code, 0) << outcome.out;
    auto files = Unpacked(ReadBytes(wexpol::Utf8ToWide(zip)));
    EXPECT_EQ(files.size(), 24u);
    EXPECT_TRUE(Holds(files["about.txt"], "wexpolctl ") &&
                Holds(files["problems.txt"], machine.problem))
        << files["problems.txt"];
    EXPECT_EQ(Holds(files["schema.sql"], "CREATE TABLE devices"), machine.bytes == good);
    for (const auto& [name, text] : files) EXPECT_FALSE(Holds(text, "s3cr3t")) << name;
    EXPECT_EQ(Tool({"--db", db, "bundle", zip}).code, 1);
  }
}

TEST_F(WhatIsTest, WatchMarksWhatChangesAndLogFollows) {
  OnFlush between_rounds([] {
    Sql("UPDATE networks SET wan_ip='192.0.2.77'");
    return true;
  });
  std::ostream out(&between_rounds);
  EXPECT_EQ(
      wexpolctl::Run({"watch", "--times", "2", "--every", "0", "list", "networks", "--limit", "1"},
                     out, out),
      0);
  const std::size_t second = between_rounds.str().find("\n# ");
  ASSERT_NE(second, std::string::npos) << between_rounds.str();
  EXPECT_TRUE(Holds(between_rounds.str().substr(second), "\n+ 71")) << between_rounds.str();
  EXPECT_TRUE(Holds(between_rounds.str().substr(second), "\n- 71"));
  EXPECT_EQ(Cells({"watch", "--times", "2", "--every", "0", "status"}, "rounds", "changed"),
            "false|false");
  EXPECT_EQ(RunLine("watch --times 1 init").code, 2) << "only what looks is watched";

  const std::wstring log = CFilePaths::GetLocationLogFile();
  WriteBytes(log, "one\ntwo\nthree\n");
  EXPECT_EQ(RunLine("log --lines 2").out, "two\nthree\n");
  int flushes = 0;
  OnFlush appends([&] {
    WriteBytes(log, ReadBytes(log) + "four\x1b\n");
    return ++flushes < 3;
  });
  std::ostream followed(&appends);
  wexpolctl::Run({"log", "--lines", "1", "--follow"}, followed, followed);
  EXPECT_TRUE(appends.str().starts_with("three\nfour\\x1b\n")) << appends.str();
}

TEST_F(WhatIsTest, CompletionKnowsEveryCommandAndItsOptions) {
  for (const char* shell : {"bash", "powershell"}) {
    const Outcome script = Tool({"completion", shell});
    for (const auto& make : wexpolctl::kCommands) {
      const wexpolctl::Command command = make();
      EXPECT_TRUE(Holds(script.out, std::string("'") + command.name)) << command.name;
      for (const auto& option : command.options) {
        EXPECT_TRUE(option.name[0] != '-' || Holds(script.out, option.key())) << option.name;
      }
    }
  }
  EXPECT_EQ(RunLine("completion fish").code, 2);
  if (wexpol::QueryWindowsVersion()) return;
  const std::string script = Write("completion", RunLine("completion bash").out);
  const std::string check =
      Write("check", ". '" + script +
                         "'; COMP_WORDS=(wexpolctl --db x config g); COMP_CWORD=4\n"
                         "_wexpolctl; [ \"${COMPREPLY[*]}\" = get ]\n");
  EXPECT_EQ(std::system(("bash '" + check + "'").c_str()), 0);
}

}  // namespace
