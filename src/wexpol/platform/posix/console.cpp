#include "wexpol/platform/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace wexpol {

std::vector<std::string> CommandLineArguments(int argc, const char* const* argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void IgnoreClosedPipes() { std::signal(SIGPIPE, SIG_IGN); }

std::unique_ptr<std::streambuf> ConsoleBuffer(std::FILE*) { return nullptr; }

std::string ShellQuoted(const std::string& argument) {
  const auto is_plain = [](unsigned char c) {
    return c >= 0x80 || std::isalnum(c) || (c != 0 && std::strchr("/._-+:@%,=", c));
  };
  if (!argument.empty() && std::all_of(argument.begin(), argument.end(), is_plain)) return argument;
  std::string quoted = "\"";
  for (const char c : argument) {
    if (c == '"' || c == '\\' || c == '$' || c == '`') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

bool IsTerminal(std::FILE* stream) { return ::isatty(::fileno(stream)) != 0; }

std::optional<std::size_t> TerminalWidth(std::FILE* stream) {
  winsize size = {};
  if (::ioctl(::fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

bool TakesColour(std::FILE* stream) {
  const char* terminal = std::getenv("TERM");
  return IsTerminal(stream) && terminal && std::strcmp(terminal, "dumb") != 0;
}

}  // namespace wexpol
