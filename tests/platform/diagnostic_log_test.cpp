#include "wexpol/platform/diagnostic_log.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/version.h"

namespace {

using wexpol::LogMessage;

class DiagnosticLogTest : public ::testing::Test {
 protected:
  // A file's text with the line ends of C.
  static std::string TextOf(const std::wstring& path) {
    std::string text = ReadBytes(path);
    std::erase(text, '\r');
    return text;
  }

  TestEnvironment environment_;
  const std::wstring path_ = CFilePaths::GetLocationLogFile();
  const std::wstring old_path_ = path_ + L".old.log";
};

TEST_F(DiagnosticLogTest, ColumnsHaveEightCharacters) {
  EXPECT_EQ(wexpol::LogColumn(L"amy"), L"amy     ");
  EXPECT_EQ(wexpol::LogColumn(L"administrators"), L"administ");
  EXPECT_EQ(wexpol::LogColumn(L""), L"        ");
  EXPECT_EQ(wexpol::ProgramColumn(L"C:\\Program.Files\\agentservice.exe"), L"agentser");
  EXPECT_EQ(wexpol::ProgramColumn(L"C:\\Program.Files\\a.b.exe"), L"a.b     ");
  EXPECT_EQ(wexpol::ProgramColumn(L"C:\\Program.Files\\agent"), L"agent   ");
}

TEST_F(DiagnosticLogTest, LinesFollowTheVersionOfANewFile) {
  ASSERT_TRUE(CDeviceInfo::WriteDeviceID(42));
  WriteBytes(path_, "");  // an empty file is a new one
  environment_.clock().SetLocal(2009, 7, 4, 8, 5, 9);
  EXPECT_TRUE(LogMessage("%s = %d", "s\xC3\xA4t", -5));
  EXPECT_TRUE(LogMessage("%s", std::string(100'000, 'x').c_str()));

  const std::string head = "07/04/09 08:05:09 " +
                           wexpol::WideToUtf8(wexpol::LogColumn(wexpol::CurrentUserName())) +
                           " wexpol_t - WexPol > ";
  EXPECT_EQ(TextOf(path_), "ClientVersion = " WEXPOL_VERSION ", DeviceID = 42\n" + head +
                               "s\xC3\xA4t = -5\n" + head + std::string(100'000, 'x') + "\n");
}

TEST_F(DiagnosticLogTest, AFileLargerThanTheThresholdIsPutAside) {
  const std::pair<std::uint32_t, std::size_t> cases[] = {{0, 5'242'880}, {1, 10'485'760}};
  for (const auto& [debug, threshold] : cases) {
    if (debug) wexpol::WriteDword(wexpol::AgentKey::kAgent, L"EnableLogLevelDebug", debug);
    wexpol::ResetLogForTesting();
    WriteBytes(path_, std::string(threshold, 'x'));
    WriteBytes(old_path_, "older");
    EXPECT_TRUE(LogMessage("appended"));
    EXPECT_GT(wexpol::FileSize(path_).value_or(0), threshold);
    EXPECT_EQ(ReadBytes(old_path_), "older");

    WriteBytes(path_, std::string(threshold + 1, 'x'));
    EXPECT_TRUE(LogMessage("fresh"));
    EXPECT_EQ(wexpol::FileSize(old_path_), threshold + 1);
    EXPECT_TRUE(TextOf(path_).starts_with("ClientVersion"));
    EXPECT_LT(wexpol::FileSize(path_).value_or(threshold), 200u);
  }
}

TEST_F(DiagnosticLogTest, ALineIsDroppedWhenTheFileIsNotToBeHad) {
  wexpol::NamedMutex mutex(L"Global\\Veyra_Log");
  ASSERT_EQ(mutex.Wait(0), wexpol::NamedMutex::WaitResult::kObtained);
  bool written = true;
  std::thread([&] { written = LogMessage("waits 2 seconds"); }).join();
  EXPECT_FALSE(written);
  mutex.Release();
  EXPECT_FALSE(wexpol::FileExists(path_));

  wexpol::RedirectFiles(environment_.PathOf(L"none"));
  wexpol::ResetLogForTesting();
  EXPECT_FALSE(LogMessage("no folder"));
}

constexpr int kLines = 2000;

int WriteLines(const Arguments& arguments) {
  wexpol::ResetLogForTesting(150'000);
  int written = 0;
  for (int i = 0; i < kLines; ++i) written += LogMessage("%s %d", arguments.at(0).c_str(), i);
  return written == kLines ? 0 : 1;
}
const ChildFunction kWriteLines("log_write_lines", WriteLines);

TEST_F(DiagnosticLogTest, TwoProcessesLoseAndTearNothing) {
  ChildProcess other(environment_.folder(), "log_write_lines", {"a"});
  EXPECT_EQ(WriteLines({"b"}), 0);
  ASSERT_TRUE(other.Succeeded());

  EXPECT_GT(wexpol::FileSize(old_path_).value_or(0), 150'000u);
  EXPECT_LT(wexpol::FileSize(old_path_).value_or(0), 150'200u);
  std::istringstream lines(TextOf(old_path_) + TextOf(path_));
  int next[2] = {0, 0}, heads = 0;
  constexpr std::size_t kHead = 47;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("ClientVersion = ")) {
      ++heads;
      continue;
    }
    ASSERT_EQ(line.find(" - WexPol > "), kHead - 12) << line;
    int& number = next[line[kHead] == 'a' ? 0 : 1];
    ASSERT_EQ(line.substr(kHead + 1), " " + std::to_string(number)) << line;
    ++number;
  }
  EXPECT_EQ(heads, 2);
  EXPECT_EQ(next[0] + next[1], 2 * kLines);
}

}  // namespace
