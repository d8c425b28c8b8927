// The command line: what was called, and with what.

#ifndef WEXPOL_WEXPOLCTL_COMMAND_LINE_H_
#define WEXPOL_WEXPOLCTL_COMMAND_LINE_H_

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tools/wexpolctl/command.h"

namespace wexpolctl {

struct CommandLine {
  bool json = false;
  bool read_only = false;
  std::string database;
  std::string root;
  Command command;
  Options options{{}};

  // The options that lead to the same place, and "wexpolctl" with them.
  std::vector<std::string> Place() const;
  std::string Tool() const;
};

// A command, "" for the tool itself, and what may follow it: its options and subcommands.
struct CommandWords {
  std::string command;
  std::vector<std::string> words;
};
// Of all commands, a command after its subcommands.
std::vector<CommandWords> WordsOfCommands();

// Nothing when the line only asked for help, which was printed to `out`. Throws a Failure when the
// line is wrong.
std::optional<CommandLine> ParseCommandLine(const std::vector<std::string>& args,
                                            std::ostream& out);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_COMMAND_LINE_H_
