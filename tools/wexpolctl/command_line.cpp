#include "tools/wexpolctl/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <numeric>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/console.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/version.h"

namespace wexpolctl {
namespace {

constexpr char kAbout[] =
    "Looks after the policy database of an agent.\n"
    "Exit codes: 0 done, 1 something found or refused, 2 wrong usage, 3 cannot be opened.";
constexpr char kNext[] = "See 'wexpolctl --help' or 'wexpolctl COMMAND --help'.";
constexpr char kJson[] = "--json", kDatabase[] = "--db", kRoot[] = "--root",
               kReadOnly[] = "--read-only";

// A command with its place in the command line.
struct Entry {
  Command command;
  CLI::App* parser;
};

// The options of every command.
void AddGlobals(CLI::App& app) {
  app.add_flag(kJson)->description("Print the result as one JSON object");
  app.add_option(kDatabase, "The database file, instead of the installed one")->option_text("PATH");
  app.add_option(kRoot,
                 "Work on a folder instead of the machine: its files and a registry of its own")
      ->option_text("FOLDER");
  app.add_flag(kReadOnly)->description("Refuse every command that would write");
}

// "config get" is the command "get" below a command "config" of its own.
CLI::App* AddParser(CLI::App& app, std::map<std::string, CLI::App*>& groups,
                    const Command& command) {
  const std::string name = command.name;
  const std::size_t blank = name.find(' ');
  if (blank == name.npos) return app.add_subcommand(name, command.help);
  const std::string group_name = name.substr(0, blank);
  CLI::App*& group = groups[group_name];
  if (!group) {
    group = app.add_subcommand(group_name, "See 'wexpolctl " + group_name + " --help'");
    group->require_subcommand(1);
    group->fallthrough();
  }
  return group->add_subcommand(name.substr(blank + 1), command.help);
}

void AddOption(CLI::App& parser, const Option& option) {
  const std::string name = option.key();
  if (option.kind == Option::kFlag) {
    parser.add_flag(name, option.help);
    return;
  }
  if (option.kind == Option::kRest) {
    parser.prefix_command()->fallthrough(false);
    return;
  }
  CLI::Option* added = parser.add_option(name, option.help);
  if (option.kind == Option::kTexts) {
    added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
  }
  const std::string value = std::string(option.name).substr(name.size());
  if (!value.empty()) added->option_text(value.substr(1));
  if (option.required) added->required();
}

std::string FooterOf(const Command& command) {
  std::string footer = "\nOf every command: --json, --db PATH, --root FOLDER, --read-only";
  if (command.example) footer += std::string("\nExample: wexpolctl ") + command.example;
  return footer;
}

std::vector<Entry> AddCommands(CLI::App& app) {
  std::vector<Entry> entries;
  std::map<std::string, CLI::App*> groups;
  for (const auto& make : kCommands) {
    Command command = make();
    CLI::App* parser = AddParser(app, groups, command);
    parser->fallthrough();
    parser->footer(FooterOf(command));
    for (const Option& option : command.options) AddOption(*parser, option);
    entries.push_back({std::move(command), parser});
  }
  return entries;
}

[[noreturn]] void ThrowUsage(const std::string& problem) {
  throw Failure{kUsage, problem + '.', kNext};
}

void CheckValue(const Option& option, const std::string& value) {
  if (value.empty()) ThrowUsage(option.key() + " is given an empty value");
  if (option.kind != Option::kNumber) return;
  const auto number = ParseNumber(value);
  if (!number || *number < 0 || *number > option.max) {
    ThrowUsage(option.key() + " takes a number from 0 to " + std::to_string(option.max) +
               ", which '" + value + "' is not");
  }
}

Options OptionsOf(const Entry& entry) {
  std::map<std::string, std::vector<std::string>> given;
  for (const Option& option : entry.command.options) {
    if (option.kind == Option::kRest) {
      given[option.key()] = entry.parser->remaining();
      continue;
    }
    const CLI::Option* found = entry.parser->get_option(option.key());
    if (found->count() == 0) continue;
    if (option.kind != Option::kFlag) {
      for (const std::string& value : found->results()) CheckValue(option, value);
    }
    given[option.key()] = found->results();
  }
  return Options(std::move(given));
}

// Empty when it is not given.
std::string PathOf(const CLI::App& app, const char* name) {
  const CLI::Option* option = app.get_option(name);
  if (option->count() == 0) return {};
  const std::string path = option->results().front();
  if (path.empty()) ThrowUsage(std::string(name) + " is given an empty value");
  return path;
}

// How many characters to insert, remove or exchange to make one text of the other.
std::size_t Distance(const std::string& one, const std::string& other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t exchanged = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

// The text that is most like a command: what is neither an option nor the value of one.
std::string CommandWordOf(const std::vector<std::string>& args) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == kDatabase || args[i] == kRoot) {
      ++i;
    } else if (!args[i].starts_with("-")) {
      return args[i];
    }
  }
  return {};
}

// The parser says of an unknown command only that one is missing.
void CheckCommandWord(const CLI::App& app, const std::vector<std::string>& args) {
  const std::string word = CommandWordOf(args);
  if (word.empty()) return;
  std::string nearest;
  std::size_t least = 3;  // More differences than this is another word.
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::size_t distance = Distance(word, command->get_name());
    if (distance == 0) return;
    if (distance < std::min(least, word.size())) {
      least = distance;
      nearest = command->get_name();
    }
  }
  const std::string hint = nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
  throw Failure{kUsage, "There is no command '" + word + "'" + (hint.empty() ? "." : hint), kNext};
}

void AddWords(const CLI::App& app, const std::string& command, std::vector<CommandWords>& all) {
  CommandWords own{command, {}};
  for (const CLI::App* below : app.get_subcommands({})) {
    own.words.push_back(below->get_name());
    AddWords(*below, command + (command.empty() ? "" : " ") + below->get_name(), all);
  }
  for (const CLI::Option* option : app.get_options()) {
    if (option->nonpositional()) own.words.push_back("--" + option->get_lnames().front());
  }
  all.push_back(std::move(own));
}

}  // namespace

std::vector<std::string> CommandLine::Place() const {
  std::vector<std::string> place;
  for (const auto& [option, path] : {std::pair(kRoot, root), std::pair(kDatabase, database)}) {
    if (path.empty()) continue;
    place.insert(place.end(), {option, wexpol::WideToUtf8(AbsolutePath(path))});
  }
  return place;
}

std::string CommandLine::Tool() const {
  std::string tool = "wexpolctl";
  for (const std::string& argument : Place()) tool += ' ' + wexpol::ShellQuoted(argument);
  return tool;
}

std::vector<CommandWords> WordsOfCommands() {
  CLI::App app(kAbout, "wexpolctl");
  AddGlobals(app);
  AddCommands(app);
  std::vector<CommandWords> all;
  AddWords(app, "", all);
  return all;
}

std::optional<CommandLine> ParseCommandLine(const std::vector<std::string>& args,
                                            std::ostream& out) {
  CLI::App app(kAbout, "wexpolctl");
  AddGlobals(app);
  app.set_version_flag("--version", "wexpolctl " WEXPOL_VERSION);
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // A path may begin with a slash.
  const std::vector<Entry> entries = AddCommands(app);
  try {
    app.parse(std::vector<std::string>(args.rbegin(), args.rend()));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error, out, out);
      return std::nullopt;
    }
    CheckCommandWord(app, args);
    ThrowUsage(error.what());
  }
  const auto entry = std::find_if(entries.begin(), entries.end(),
                                  [](const Entry& e) { return e.parser->parsed(); });
  return CommandLine{app.count(kJson) > 0, app.count(kReadOnly) > 0, PathOf(app, kDatabase),
                     PathOf(app, kRoot),   entry->command,           OptionsOf(*entry)};
}

}  // namespace wexpolctl
