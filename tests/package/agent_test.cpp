// The example agent, run as a program of its own on a database that the installed tool made.

#include "agent_folder.h"

namespace {

class AgentTest : public AgentFolder {};

TEST_F(AgentTest, GoesThroughItsDay) {
  const std::string day =
      folder_.string() + " " + std::filesystem::path(SAMPLES).make_preferred().string();
  EXPECT_NE(Run(AGENT, day).find("wexpolctl --root"), std::string::npos);
  EXPECT_NE(code_, 0);  // There is no database yet.

  const std::string made = Run(WEXPOLCTL, "--root " + folder_.string() + " init");
  ASSERT_EQ(code_, 0) << made;
  const std::string printed = Run(AGENT, day);
  EXPECT_EQ(code_, 0) << printed;
  for (const char* line :
       {"synchronised 13 tables", "this device: 70001", "requests carry a token: yes",
        "antivirus installed and enabled: yes", "console address known: yes",
        "patience.exe: blocked", "unknown.exe: not controlled", "alert 202: to be sent",
        "alert 202: held", "schedule 1 is due in 0 s", "schedule 2 is due in "}) {
    EXPECT_NE(printed.find(line), std::string::npos) << line << "\n" << printed;
  }
}

}  // namespace
