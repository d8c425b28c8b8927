// A folder that takes the machine's place, and the programs that work on it.

#ifndef WEXPOL_TESTS_PACKAGE_AGENT_FOLDER_H_
#define WEXPOL_TESTS_PACKAGE_AGENT_FOLDER_H_

#include <gtest/gtest.h>
#include <wexpol.h>
#include <wexpol/platform/testing.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class AgentFolder : public ::testing::Test {
 protected:
  AgentFolder() {
    std::filesystem::create_directory(folder_);
    wexpol::RedirectMachine(folder_.wstring());
  }
  ~AgentFolder() override {
    wexpol::RedirectMachine(L"");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // What the program prints; its exit code is left in `code_`.
  std::string Run(const char* program, const std::string& arguments) {
    const std::filesystem::path output = folder_ / "output.txt";
    const std::string command = std::filesystem::path(program).make_preferred().string() + " " +
                                arguments + " > " + output.string() + " 2>&1";
    code_ = std::system(command.c_str());
    std::ifstream file(output, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), {});
  }

  // Makes the database, with the samples in it.
  void Provision() {
    const std::string root = "--root " + folder_.string() + " ";
    Run(WEXPOLCTL, root + "init");
    ASSERT_EQ(code_, 0);
    const std::string printed =
        Run(WEXPOLCTL, root + "sync " + std::filesystem::path(SAMPLES).make_preferred().string());
    ASSERT_EQ(code_, 0) << printed;
  }

  int code_ = 0;
  const std::filesystem::path folder_ = std::filesystem::temp_directory_path() /
                                        ("wexpol-agent-" + std::to_string(std::random_device()()));
};

#endif  // WEXPOL_TESTS_PACKAGE_AGENT_FOLDER_H_
