// Second processes for tests: this program, started again to run one named function.

#ifndef WEXPOL_TESTS_SUPPORT_CHILD_PROCESS_H_
#define WEXPOL_TESTS_SUPPORT_CHILD_PROCESS_H_

#include <future>
#include <string>
#include <vector>

#include "wexpol/platform/files.h"

using Arguments = std::vector<std::string>;

// A function that a child process can run; what it answers is the process's exit code. Defined at
// namespace scope beside the test that starts it. The child is redirected to the parent's folder
// before it runs, and has the machine's own clock.
struct ChildFunction {
  ChildFunction(const char* name, int (*function)(const Arguments&));
};

// Runs from the constructor on. Arguments must not contain quotes. `program` may be a copy of this
// program in a folder of its own.
class ChildProcess {
 public:
  ChildProcess(const std::wstring& folder, const std::string& name, const Arguments& arguments = {},
               const std::wstring& program = wexpol::ExecutablePath());

  // True when it ended with 0. The destructor waits, too.
  bool Succeeded() { return exit_status_.get() == 0; }

 private:
  std::future<int> exit_status_;
};

bool IsChild(int argc, char** argv);
int RunAsChild(int argc, char** argv);

#endif  // WEXPOL_TESTS_SUPPORT_CHILD_PROCESS_H_
