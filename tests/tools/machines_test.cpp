// Every command on machines of every kind: what it answers, and that it leaves them as they were.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "tests/support/test_environment.h"
#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/run.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/registry.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/encrypted_file.h"

#ifndef _WIN32
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr char kSamples[] = WEXPOL_SOURCE_DIR "/samples/console";

// A command that only looks, or writes nothing but OUT.
constexpr const char* kLines[] = {
    "status",
    "doctor",
    "check",
    "tables",
    "list devices",
    "versions",
    "identity",
    "config get sb_flow_enabled",
    "config list",
    "explain --file patience.exe --login 9001",
    "filter check Television",
    "services",
    "options",
    "alerts",
    "next-scan",
    "time",
    "diff logins SAMPLES/logins.json",
    "export logins OUT/logins.json",
    "log",
    "watch --times 1 completion bash",
    "completion bash",
    "bundle OUT/bundle",
    "backup --to OUT/copy.bak",
};

struct Expectation {
  const char* machine;
  std::string lines;  // How they begin; the first expectation that fits a line holds.
  int code;
  std::string first;  // How the first line of the problem begins, else of the result.
};

const Expectation kExpectations[] = {
    {"any", "bundle", 0, ""},
    {"any", "completion", 0, "# Completes wexpolctl"},
    {"any", "log", 3, "There is no log at FOLDER/wexpol.log"},
    {"any", "watch", 0, "# 2024-03-13 12:00:00 +00:00"},
    {"healthy", "status", 0, "file "},
    {"healthy", "doctor", 0, "check "},
    {"healthy", "check", 0, "file "},
    {"healthy", "list", 0, "table  devices"},
    {"healthy", "versions", 0, "report "},
    {"healthy", "identity", 0, "stored id "},
    {"healthy", "config get", 0, "key "},
    {"healthy", "options", 0, "opt_web_guard=1"},
    {"healthy", "time", 0, "bias in minutes "},
    {"healthy", "", 0, ""},
    {"missing", "doctor", 1, "Not all is well."},
    {"missing", "", 3, "There is no database at FOLDER"},
    {"empty", "doctor", 1, "Not all is well."},
    {"empty", "", 3, "FOLDER/wexpol.db has no tables. Put the backup in its place with 'wexpolctl"},
    {"foreign", "doctor", 1, "Not all is well."},
    {"foreign", "", 3, "FOLDER/wexpol.db is damaged or was made with another key. Put the backup"},
    {"half-made", "status", 1, "Missing or unreadable: "},
    {"half-made", "doctor", 1, "Not all is well."},
    {"half-made", "check", 1, "The database is damaged or incomplete."},
    {"half-made", "tables", 1, "Missing or unreadable: "},
    {"half-made", "list", 0, "table  devices"},
    {"half-made", "backup", 1, "No backup was made: the table time_zones is missing"},
    {"half-made", "diff", 1, "SAMPLES/logins.json was refused at record 1: no such table: logins."},
    {"half-made", "export", 1, "logins cannot be read to its end: no such table: logins."},
    {"half-made", "", 1, "FOLDER/wexpol.db is damaged or incomplete: the table time_zones"},
    {"damaged", "status", 0, "file "},
    {"damaged", "doctor", 1, "Not all is well."},
    {"damaged", "check", 1, "The database is damaged or incomplete."},
    {"damaged", "tables", 1, "Missing or unreadable: "},
    {"damaged", "list", 0, "table  devices"},
    {"damaged", "backup", 1, "No backup was made: "},
    {"damaged", "diff", 1, "The file cannot be copied to try it: "},
    {"damaged", "export", 1, "The file cannot be copied to try it: "},
    {"damaged", "", 1, "FOLDER/wexpol.db is damaged or incomplete: Tree "},
};

std::string Replaced(std::string text, const std::string& piece, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(piece, at)) != text.npos; at += by.size()) {
    text.replace(at, piece.size(), by);
  }
  return text;
}

class MachinesTest : public ::testing::Test {
 protected:
  struct Outcome {
    int code;
    std::string first;
  };

  ~MachinesTest() override { fs::remove_all(out_); }

  Outcome Run(const std::string& line) const {
    std::istringstream words(Replaced(Replaced(line, "OUT", out_), "SAMPLES", kSamples));
    std::ostringstream out;
    std::ostringstream err;
    const int code = wexpolctl::Run({std::istream_iterator<std::string>(words), {}}, out, err);
    const std::string all = err.str() + out.str();
    const std::string folder = wexpol::WideToUtf8(environment_.folder());
    std::string first = Replaced(all.substr(0, all.find('\n')), folder, "FOLDER");
    first = Replaced(Replaced(std::move(first), "\\", "/"), kSamples, "SAMPLES");
    return {code, Replaced(std::move(first), "Z:SAMPLES", "SAMPLES")};  // The drive of Wine.
  }

  void Make(const std::string& machine) {
    fs::remove_all(out_);
    fs::create_directories(out_);
    for (const char* line : {"init", "sync SAMPLES", "backup"}) {
      ASSERT_EQ(Run(line).code, 0) << line;
    }
    // Without it there is no installation id to be made.
    CRegistryVeyra system;
    system.OpenForWriting(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
                          wexpol::RegistryView::kProcess);
    system.SetDWORDValue(L"InstallDate", 1);
    std::string bytes = ReadBytes(path_);
    if (machine == "healthy") return;
    for (const wchar_t* end : {L"", L"-wal", L"-shm"}) wexpol::RemoveFile(path_ + end);
    if (machine == "empty") WriteBytes(path_, "");
    if (machine == "foreign") WriteBytes(path_, "{\"a document\": \"of another program\"}");
    if (machine == "half-made") {
      const wexpol::EngineHandle db(
          wexpol::OpenKeyed(path_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
      sqlite3_exec(db.get(), "CREATE TABLE devices(id, name, token)", nullptr, nullptr, nullptr);
    }
    if (machine == "damaged") {
      bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x40);
      WriteBytes(path_, bytes);
    }
  }

  // The folder with what lies in it and, where the registry is elsewhere, what a question of the
  // agent stores there. A live index of a log changes with every reader.
  std::string Fingerprint() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(environment_.folder()))) {
      const std::string name = entry.path().string();
      files[name] =
          entry.is_directory() || name.ends_with("-shm") ? "" : ReadBytes(entry.path().wstring());
    }
    std::string text;
    for (const auto& [name, bytes] : files) text += name + '\n' + bytes + '\n';
    CRegistryVeyra classes;
    classes.Open(L"SOFTWARE\\Classes\\CLSID", wexpol::RegistryAccess::kRead,
                 wexpol::RegistryView::kProcess);
    long device = -1;
    CDeviceInfo::GetDeviceID(&device);
    return text + Join(classes.SubkeyNames().size(), device);
  }

  TestEnvironment environment_;
  const std::wstring path_ = CFilePaths::GetLocationDB();
  const std::string out_ = wexpol::WideToUtf8(environment_.folder()) + ".out";
};

TEST_F(MachinesTest, EveryCommandAnswersAndLeavesTheMachineAsItWas) {
  std::string last;
  for (const Expectation& expected : kExpectations) {
    const std::string machine = expected.machine;
    if (machine == last || machine == "any") continue;
    last = machine;
    Make(machine);
    const std::string before = Fingerprint();
    for (const std::string line : kLines) {
      const auto fits = [&](const Expectation& each) {
        return (machine == each.machine || each.machine == std::string("any")) &&
               line.starts_with(each.lines);
      };
      const auto& found = *std::ranges::find_if(kExpectations, fits);
      const Outcome outcome = Run(line);
      EXPECT_EQ(outcome.code, found.code) << machine << ": " << line << ": " << outcome.first;
      EXPECT_TRUE(outcome.first.starts_with(found.first))
          << machine << ": " << line << ": " << outcome.first;
      EXPECT_TRUE(Fingerprint() == before) << machine << ": " << line;
    }
    for (const wchar_t* end : {L"", L"-wal", L"-shm"}) wexpol::RemoveFile(path_ + end);
    wexpol::RemoveFile(CFilePaths::GetLocationBackupDB());
  }
}

TEST_F(MachinesTest, EveryCommandStandsInTheTable) {
  for (const auto& make : wexpolctl::kCommands) {
    const wexpolctl::Command command = make();
    if (command.effect == wexpolctl::Effect::kChanges) continue;
    EXPECT_TRUE(std::ranges::any_of(kLines, [&](const std::string line) {
      return (line + ' ').starts_with(std::string(command.name) + ' ');
    })) << command.name;
  }
}

}  // namespace
