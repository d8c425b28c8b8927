#include "tests/support/child_process.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
namespace {

constexpr std::string_view kSwitch = "--child=";

std::map<std::string, int (*)(const Arguments&), std::less<>>& Functions() {
  static std::map<std::string, int (*)(const Arguments&), std::less<>> functions;
  return functions;
}

}  // namespace

ChildFunction::ChildFunction(const char* name, int (*function)(const Arguments&)) {
  Functions()[name] = function;
}

ChildProcess::ChildProcess(const std::wstring& folder, const std::string& name,
                           const Arguments& arguments, const std::wstring& program) {
  // Both shells take quotes as they are when the line does not begin with one.
  std::string line = "cd . && \"" + wexpol::WideToUtf8(program) + "\" " + std::string(kSwitch) +
                     name + " \"" + wexpol::WideToUtf8(folder) + '"';
  for (const std::string& argument : arguments) line += " \"" + argument + '"';
  exit_status_ = std::async(std::launch::async, [line] { return std::system(line.c_str()); });
}

bool IsChild(int argc, char** argv) {
  return argc > 2 && std::string_view(argv[1]).starts_with(kSwitch);
}

int RunAsChild(int argc, char** argv) {
  const auto found = Functions().find(std::string_view(argv[1]).substr(kSwitch.size()));
  if (found == Functions().end()) {
    std::fprintf(stderr, "No child function: %s\n", argv[1]);
    return 1;
  }
  wexpol::RedirectMachine(wexpol::Utf8ToWide(argv[2]));
  return found->second(Arguments(argv + 3, argv + argc));
}
