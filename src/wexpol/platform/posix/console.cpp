#include "wexpol/platform/console.h"

#include <unistd.h>

namespace wexpol {

std::vector<std::string> CommandLineArguments(int argc, const char* const* argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void UseUtf8Console() {}

bool IsTerminal(std::FILE* stream) { return ::isatty(::fileno(stream)) != 0; }

}  // namespace wexpol
