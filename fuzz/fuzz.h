// What the fuzz harnesses share.

#ifndef WEXPOL_FUZZ_FUZZ_H_
#define WEXPOL_FUZZ_FUZZ_H_

#include <sqlite3.h>

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// One harness, declared at namespace scope. `run` takes any bytes; what it finds ends the process.
struct Harness {
  Harness(const char* name, void (*run)(std::string_view input));

  const char* name;
  void (*run)(std::string_view input);
};

const std::vector<const Harness*>& AllHarnesses();

// Ends the process when something that must hold does not.
void Require(bool holds, const char* what);

// The input up to the next line break, which is taken from it.
std::string TakeLine(std::string_view& input);

// An empty provisioned file in a folder of its own, with registry and locations redirected there;
// made at the first use, gone with the process.
sqlite3* Database();

}  // namespace fuzz

#endif  // WEXPOL_FUZZ_FUZZ_H_
