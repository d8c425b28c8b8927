// A command of the tool: how it is told, what it is given, how it fails.

#ifndef WEXPOL_WEXPOLCTL_COMMAND_H_
#define WEXPOL_WEXPOLCTL_COMMAND_H_

#include <cstdint>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/wexpolctl/report.h"

namespace wexpolctl {

enum ExitCode : int {
  kDone = 0,
  kFinding = 1,  // Something is wrong with the data, or it was refused.
  kUsage = 2,
  kCannotOpen = 3,  // The database, or a file that is needed, cannot be read.
};

// Thrown to end a command: one sentence on what is wrong, one on what to do (or none). What the
// report holds by then is still printed. Never carries a secret.
struct Failure {
  ExitCode code;
  std::string problem;
  std::string next;
};

// The file is missing or damaged: a backup could take its place.
struct LostFile : Failure {};

// What a run does to the machine: its registry, log and shared blocks, and the database.
enum class Effect {
  kLooks,       // All stays as it was.
  kWritesFile,  // Nothing but what the caller named is written.
  kChanges,
};

struct Option {
  // kTexts: one or more; kRest: a command line of its own, to the end.
  enum Kind { kFlag, kText, kNumber, kTexts, kRest };

  const char* name;  // "--limit NUMBER", or "TABLE" for one that is told by its place.
  Kind kind;
  const char* help;
  bool required = false;
  std::optional<Effect> effect = {};  // Of the command, where this is given.
  std::int64_t max = INT32_MAX;       // Of a number; the smallest is 0.

  // "--where" of "--where COLUMN=VALUE": what follows is only for the help.
  std::string key() const;
};

// The whole text as a decimal number; nothing when it is none or has more than 64 bits.
std::optional<std::int64_t> ParseNumber(std::string_view text);

// What was given, by option name.
class Options {
 public:
  explicit Options(std::map<std::string, std::vector<std::string>> given)
      : given_(std::move(given)) {}

  bool Has(const std::string& name) const { return given_.contains(name); }
  std::vector<std::string> Texts(const std::string& name) const;
  // The one value; empty when it was not given.
  std::string Text(const std::string& name) const;
  std::optional<std::int64_t> Number(const std::string& name) const;

 private:
  std::map<std::string, std::vector<std::string>> given_;
};

// One run of a command.
struct Call {
  const Options& options;
  Report& report;
  std::wstring database;   // The file that --db names, else the installed one.
  std::string tool;        // "wexpolctl" with what leads it to the same place.
  std::ostream* terminal;  // To draw progress on; null when nobody watches.
  std::ostream& out;       // For what is printed while the command runs.
  bool json = false;       // The report is printed as JSON, and nothing may come before it.
  std::vector<std::string> place = {};  // The options that lead to the same place.
};

struct Command {
  const char* name;  // Two words make a command of a group: "config get".
  const char* help;
  std::vector<Option> options;
  ExitCode (*run)(Call& call);
  Effect effect = Effect::kLooks;
  const char* example = nullptr;  // What follows "wexpolctl".

  Effect EffectOf(const Options& given) const;
};

// `text`, its commands that begin with "wexpolctl" beginning with `tool` of a call instead: they
// work on what the call is about.
std::string AdviceFor(const std::string& tool, const std::string& text);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_COMMAND_H_
