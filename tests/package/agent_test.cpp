// The example agent, run as a program of its own on a database that the installed tool made.

#include <vector>

#include "agent_folder.h"

namespace {

struct Day {
  const char* program;
  std::vector<const char*> lines;
};

const Day kDays[] = {
    {AGENT,
     {"synchronised 13 tables", "this device: 70001", "requests carry a token: yes",
      "antivirus installed and enabled: yes", "console address known: yes", "patience.exe: blocked",
      "unknown.exe: not controlled", "alert 202: to be sent", "alert 202: held",
      "schedule 1 is due in 0 s", "schedule 2 is due in "}},
    {C_AGENT,
     {"WexPolicy " WEXPOL_VERSION, "synchronised 18 tables", "this device: 70001",
      "requests carry a token: yes", "antivirus installed and enabled: yes",
      "console address known: yes", "password accepted: no",
      "versions: {\"g\":", "ordinary logins: [{\"id\": 9001,", "time: {\"zone\": {\"bias\": -60,",
      "-u \"Corvane\"", "attempts to install: 3",
      "patience.exe: blocked, by: {\"policy_id\": 501,\"app_control_id\": 41,",
      "renamed.exe: blocked", "unknown.exe: not controlled, by: {}", "alerts to send: [202]",
      "alerts to send: []", "check timers: {", "schedule 1 is due in 0 s"}}};

class Agent : public AgentFolder, public ::testing::WithParamInterface<Day> {};

TEST_P(Agent, GoesThroughItsDay) {
  const std::string day =
      folder_.string() + " " + std::filesystem::path(SAMPLES).make_preferred().string();
  EXPECT_NE(Run(GetParam().program, day).find("wexpolctl --root"), std::string::npos);
  EXPECT_NE(code_, 0);  // There is no database yet.

  const std::string made = Run(WEXPOLCTL, "--root " + folder_.string() + " init");
  ASSERT_EQ(code_, 0) << made;
  const std::string printed = Run(GetParam().program, day);
  EXPECT_EQ(code_, 0) << printed;
  for (const char* line : GetParam().lines) {
    EXPECT_NE(printed.find(line), std::string::npos) << line << "\n" << printed;
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, Agent, ::testing::ValuesIn(kDays));

}  // namespace
