// Who may use the files: seen as another user of the host, which only root can become.

#ifndef _WIN32

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "tests/support/policy_test.h"
#include "tools/provision/provision.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/file_rights.h"

namespace {

constexpr uid_t kOther = 65534;
constexpr wchar_t kReaders[] = L"daemon";

class OtherUserTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user";
    ::umask(0077);
  }
  ~OtherUserTest() override { ::umask(022); }

  // What `question` answers as another user, a member of the group or not.
  static bool AsOther(bool reader, const std::function<bool()>& question) {
    const pid_t child = ::fork();
    if (child == 0) {
      const gid_t group = reader ? ::getgrnam("daemon")->gr_gid : kOther;
      const bool became =
          ::setgroups(0, nullptr) == 0 && ::setgid(group) == 0 && ::setuid(kOther) == 0;
      ::_exit(became && question() ? 0 : 1);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    return status == 0;
  }

  // In octal digits.
  static std::string ModeOf(const std::wstring& path) {
    struct stat status = {};
    ::stat(wexpol::WideToUtf8(path).c_str(), &status);
    char digits[8];
    std::snprintf(digits, sizeof digits, "%o", status.st_mode & 07777);
    return digits;
  }

  TestEnvironment environment_;
  const std::wstring database_ = CFilePaths::GetLocationDB();
};

TEST_F(OtherUserTest, OnlyTheOwnerAndTheGroupRead) {
  const struct {
    const wchar_t* readers;
    const char *folder, *file;
  } cases[] = {{L"", "700", "600"}, {kReaders, "2750", "640"}};
  for (const auto& [readers, folder, file] : cases) {
    std::string error;
    ASSERT_TRUE(wexpol::PrepareFolders(database_, readers, error)) << error;
    ASSERT_TRUE(wexpol::CreateDatabase(database_, error)) << error;
    ASSERT_TRUE(wexpol::WriteDword(wexpol::AgentKey::kAgent, L"DID", 7));
    EXPECT_EQ(ModeOf(environment_.folder()), folder);
    EXPECT_EQ(ModeOf(environment_.PathOf(L"registry")), folder);
    for (const wchar_t* end : {L"", L"-wal", L"-shm"}) EXPECT_EQ(ModeOf(database_ + end), file);

    for (const bool reader : {false, true}) {
      for (const int flags : {SQLITE_OPEN_READWRITE, SQLITE_OPEN_READONLY}) {
        const auto reads = [&] {
          CPolicyDB db(kAccessCode, database_.c_str(), flags, 100);
          return db.IsProvisioned();
        };
        EXPECT_EQ(AsOther(reader, reads), reader && *readers) << readers << flags;
      }
      EXPECT_FALSE(AsOther(reader, [&] {
        return wexpol::MakePrivateFile(CFilePaths::GetLocationBackupDB()) ||
               CPolicyDB(kAccessCode, database_.c_str(), kReadWrite, 100).ClearLogins();
      }));
    }
    for (const wchar_t* end : {L"", L"-wal", L"-shm"}) wexpol::RemoveFile(database_ + end);
    wexpol::DeleteRedirectedRegistry();
  }
  std::string error;
  EXPECT_FALSE(wexpol::PrepareFolders(database_, L"no such group", error));
}

TEST_F(OtherUserTest, ARestoreKeepsTheRightsOfWhatItReplaces) {
  std::string error;
  ASSERT_TRUE(wexpol::PrepareFolders(database_, L"", error)) << error;
  ASSERT_TRUE(wexpol::CreateDatabase(CFilePaths::GetLocationBackupDB(), error)) << error;
  ::chmod(wexpol::WideToUtf8(CFilePaths::GetLocationBackupDB()).c_str(), 0666);
  CPolicyDB db(kAccessCode, kReadWrite, 100);  // there is none: the search takes the backup
  EXPECT_EQ(ModeOf(database_), "600");
  db.CloseDB();
  ::chmod(wexpol::WideToUtf8(database_).c_str(), 0640);
  for (const char* content : {"", "no database at all"}) {
    WriteBytes(database_, content);
    EXPECT_TRUE(db.RestoreDB());
    EXPECT_EQ(ModeOf(database_), "640") << content;
    EXPECT_TRUE(db.IsProvisioned());
    db.CloseDB();
  }
}

TEST_F(OtherUserTest, EveryUserLogsAndNobodyMisusesIt) {
  const std::wstring folder = environment_.PathOf(L"log");
  ASSERT_TRUE(wexpol::MakeLogFolder(folder));
  ::chmod(wexpol::WideToUtf8(environment_.folder()).c_str(), 0755);
  wexpol::RedirectFiles(folder);
  const auto logs = [] {
    wexpol::ResetLogForTesting(10);  // each line puts the file before it aside
    return wexpol::LogMessage("a line") && wexpol::LogMessage("a line");
  };
  EXPECT_TRUE(logs());
  EXPECT_TRUE(AsOther(false, logs));
  EXPECT_TRUE(logs());
  const std::wstring log = CFilePaths::GetLocationLogFile(),
                     victim = environment_.PathOf(L"victim");
  WriteBytes(victim, "");
  for (const auto plant : {::symlink, ::link}) {
    wexpol::RemoveFile(log);
    ASSERT_EQ(plant(wexpol::WideToUtf8(victim).c_str(), wexpol::WideToUtf8(log).c_str()), 0);
    EXPECT_FALSE(wexpol::LogMessage("into another file"));
  }
  EXPECT_EQ(ReadBytes(victim), "");
}

}  // namespace

#endif
