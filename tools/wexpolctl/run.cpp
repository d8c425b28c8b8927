#include "tools/wexpolctl/run.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
#include "wexpol_version.h"

namespace wexpolctl {

std::vector<std::string> Options::Texts(const std::string& name) const {
  const auto found = given_.find(name);
  return found == given_.end() ? std::vector<std::string>() : found->second;
}

std::string Options::Text(const std::string& name) const {
  const auto texts = Texts(name);
  return texts.empty() ? std::string() : texts.front();
}

std::optional<std::int64_t> Options::Number(const std::string& name) const {
  if (!Has(name)) return std::nullopt;
  return std::stoll(Text(name));
}

namespace {

constexpr char kAbout[] =
    "Looks after the policy database of an agent.\n"
    "Exit codes: 0 done, 1 something found or refused, 2 wrong usage, 3 cannot be opened.";

struct Globals {
  bool json = false;
  std::string database;
  std::string root;
};

// A command with its place in the command line.
struct Entry {
  Command command;
  CLI::App* parser;
};

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

// "--where COLUMN=VALUE" is the option "--where"; what follows is only for the help.
std::string NameOf(const Option& option) { return {option.name, std::strcspn(option.name, " ")}; }

void AddOption(CLI::App& parser, const Option& option) {
  const std::string name = NameOf(option);
  if (option.kind == Option::kFlag) {
    parser.add_flag(name, option.help);
    return;
  }
  CLI::Option* added = parser.add_option(name, option.help);
  if (option.kind == Option::kTexts) {
    added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
  }
  if (option.kind == Option::kNumber) added->check(CLI::TypeValidator<std::int64_t>("NUMBER"));
  if (name.size() < std::strlen(option.name)) added->option_text(option.name + name.size() + 1);
  if (option.required) added->required();
}

std::vector<Entry> AddCommands(CLI::App& app) {
  std::vector<Entry> entries;
  std::map<std::string, CLI::App*> groups;
  for (const auto& make : kCommands) {
    Command command = make();
    CLI::App* parser = AddParser(app, groups, command);
    parser->fallthrough();
    for (const Option& option : command.options) AddOption(*parser, option);
    entries.push_back({std::move(command), parser});
  }
  return entries;
}

Options OptionsOf(const Entry& entry) {
  std::map<std::string, std::vector<std::string>> given;
  for (const Option& option : entry.command.options) {
    const CLI::Option* found = entry.parser->get_option(NameOf(option));
    if (found->count() > 0) given[NameOf(option)] = found->results();
  }
  return Options(std::move(given));
}

void Redirect(const std::string& root) {
  const std::wstring folder = AbsolutePath(root);
  std::error_code error;
  std::filesystem::create_directories(ToPath(folder), error);
  if (error) {
    throw Failure{kCannotOpen, "The folder " + root + " cannot be used: " + error.message() + ".",
                  "Name a folder that this user may write to."};
  }
  wexpol::RedirectMachine(folder);
}

ExitCode RunEntry(const Entry& entry, const Globals& globals, Report& report,
                  std::ostream* terminal) {
  if (!globals.root.empty()) Redirect(globals.root);
  const Options options = OptionsOf(entry);
  Call call = {
      options, report,
      globals.database.empty() ? CFilePaths::GetLocationDB() : AbsolutePath(globals.database),
      terminal};
  return entry.command.run(call);
}

void Print(const Report& report, bool json, std::ostream& out) {
  if (json) {
    report.PrintJson(out);
  } else {
    report.PrintText(out);
  }
}

// Runs `action` and prints what it reports, also when it fails.
template <typename Action>
int RunReported(bool json, std::ostream& out, std::ostream& err, Action&& action) {
  Report report;
  Failure failure;
  try {
    failure.code = action(report);
  } catch (const Failure& thrown) {
    failure = thrown;
  } catch (const std::exception& thrown) {
    failure = {kCannotOpen, std::string("It could not be done: ") + thrown.what() + ".", ""};
  }
  const bool failed = !failure.problem.empty();
  if (failed && json) {
    report.Add("error", Text(failure.problem));
    report.Add("next", Text(failure.next));
  }
  Print(report, json, out);
  out.flush();
  if (failed) {
    err << failure.problem << (failure.next.empty() ? "" : " ") << failure.next << std::endl;
  }
  return failure.code;
}

}  // namespace

int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
        bool err_is_terminal) {
  CLI::App app(kAbout, "wexpolctl");
  Globals globals;
  app.add_flag("--json", globals.json, "Print the result as one JSON object");
  app.add_option("--db", globals.database, "The database file, instead of the installed one")
      ->option_text("PATH");
  app.add_option("--root", globals.root,
                 "Work on a folder instead of the machine: its files and a registry of its own")
      ->option_text("FOLDER");
  app.set_version_flag("--version", "wexpolctl " WEXPOL_VERSION);
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // A path may begin with a slash.
  const std::vector<Entry> entries = AddCommands(app);

  try {
    app.parse(std::vector<std::string>(args.rbegin(), args.rend()));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error, out, err);
    const bool json = std::find(args.begin(), args.end(), "--json") != args.end();
    return RunReported(json, out, err, [&](Report&) -> ExitCode {
      throw Failure{kUsage, error.what() + std::string("."),
                    "See 'wexpolctl --help' or 'wexpolctl COMMAND --help'."};
    });
  }
  const auto entry = std::find_if(entries.begin(), entries.end(),
                                  [](const Entry& e) { return e.parser->parsed(); });
  return RunReported(globals.json, out, err, [&](Report& report) {
    return RunEntry(*entry, globals, report, err_is_terminal ? &err : nullptr);
  });
}

}  // namespace wexpolctl
