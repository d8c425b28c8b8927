// The example agent, run as a program of its own on a database that the installed tool made.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

class AgentTest : public ::testing::Test {
 protected:
  AgentTest() { fs::create_directory(folder_); }
  ~AgentTest() override { fs::remove_all(folder_); }

  // What the program prints; `code` is its exit code.
  std::string Run(const char* program, const std::string& arguments, int* code) {
    const fs::path output = folder_ / "output.txt";
    const std::string command = fs::path(program).make_preferred().string() + " " + arguments +
                                " > " + output.string() + " 2>&1";
    *code = std::system(command.c_str());
    std::ifstream file(output, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), {});
  }

  const fs::path folder_ =
      fs::temp_directory_path() / ("wexpol-agent-" + std::to_string(std::random_device()()));
};

TEST_F(AgentTest, GoesThroughItsDay) {
  int code = 0;
  const std::string day = folder_.string() + " " + fs::path(SAMPLES).make_preferred().string();
  EXPECT_NE(Run(AGENT, day, &code).find("wexpolctl --root"), std::string::npos);
  EXPECT_NE(code, 0);  // There is no database yet.

  const std::string made = Run(WEXPOLCTL, "--root " + folder_.string() + " init", &code);
  ASSERT_EQ(code, 0) << made;
  const std::string printed = Run(AGENT, day, &code);
  EXPECT_EQ(code, 0) << printed;
  for (const char* line :
       {"synchronised 13 tables", "this device: 70001", "requests carry a token: yes",
        "antivirus installed and enabled: yes", "console address known: yes",
        "patience.exe: blocked", "unknown.exe: not controlled", "alert 202: to be sent",
        "alert 202: held", "schedule 1 is due in 0 s", "schedule 2 is due in "}) {
    EXPECT_NE(printed.find(line), std::string::npos) << line << "\n" << printed;
  }
}

}  // namespace
