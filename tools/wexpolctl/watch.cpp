// wexpolctl watch: a command again and again, with what has changed.

#include <algorithm>
#include <chrono>
#include <set>
#include <sstream>
#include <thread>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/run.h"
#include "wexpol/platform/clock.h"

namespace wexpolctl {
namespace {

using Lines = std::multiset<std::string>;

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.insert(line);
  return lines;
}

// Every line behind a mark: '+' where it was not there before, '-' where it is no more.
void PrintMarked(const std::string& now, Lines before, std::ostream& out) {
  std::istringstream stream(now);
  for (std::string line; std::getline(stream, line);) {
    const auto found = before.find(line);
    out << (found == before.end() ? "+ " : "  ") << line << '\n';
    if (found != before.end()) before.erase(found);
  }
  for (const std::string& line : before) out << "- " << line << '\n';
}

struct Round {
  int code;
  std::string text;  // What was printed, a problem included.
};

Round RunOnce(const std::vector<std::string>& args) {
  std::ostringstream out;
  std::ostringstream err;
  const int code = Run(args, out, err);
  return {code, out.str() + (args.back() == "--json" ? "" : err.str())};
}

// The command with the place of this call, which it may only look at.
std::vector<std::string> InnerArguments(const Call& call) {
  std::vector<std::string> args = call.place;
  args.emplace_back("--read-only");
  const auto command = call.options.Texts("COMMAND");
  std::copy_if(command.begin(), command.end(), std::back_inserter(args),
               [](const std::string& word) { return word != "--"; });
  if (call.json) args.emplace_back("--json");
  return args;
}

void CheckCommand(const Call& call) {
  const auto command = call.options.Texts("COMMAND");
  if (command.empty()) {
    throw Failure{kUsage, "There is no command to watch.", "Write 'wexpolctl watch status'."};
  }
  if (std::find(command.begin(), command.end(), "--json") != command.end()) {
    throw Failure{kUsage, "--json belongs before 'watch'.", "Write 'wexpolctl --json watch ...'."};
  }
  if (command[0] == "watch" || command[0] == "log") {
    throw Failure{kUsage, "'" + command[0] + "' cannot be watched.",
                  "See 'wexpolctl log --follow'."};
  }
}

ExitCode Watch(Call& call) {
  CheckCommand(call);
  const auto args = InnerArguments(call);
  const std::chrono::seconds pause(call.options.Number("--every").value_or(2));
  const std::int64_t times = call.options.Number("--times").value_or(call.json ? 1 : INT64_MAX);
  Listing* rounds =
      call.json ? &call.report.AddListing("rounds", {"at", "exit code", "changed", "result"})
                : nullptr;
  Round former = {kDone, ""};
  for (std::int64_t round = 0; round < times && call.out.good(); ++round) {
    if (round > 0) std::this_thread::sleep_for(pause);
    const Cell at = Instant(wexpol::NowUtc());
    Round now = RunOnce(args);
    const bool changed = round > 0 && now.text != former.text;
    if (rounds) {
      rounds->Add({at, Number(now.code), Flag(changed), Json(now.text)});
    } else if (round == 0 || changed) {
      call.out << "# " << at.text << '\n';
      PrintMarked(now.text, LinesOf(round == 0 ? now.text : former.text), call.out);
      call.out.flush();
    }
    former = std::move(now);
  }
  return static_cast<ExitCode>(former.code);
}

}  // namespace

Command WatchCommand() {
  return {
      "watch",
      "Repeat a command that only looks, and mark what has changed: watch [OPTIONS] COMMAND ...",
      {{"--every SECONDS", Option::kNumber, "The pause between two rounds; 2 when left out"},
       {"--times NUMBER", Option::kNumber, "Stop after so many rounds, else at Ctrl-C"},
       {"COMMAND", Option::kRest, "The command with its options"}},
      &Watch,
      Effect::kLooks,
      "watch --every 5 services"};
}

}  // namespace wexpolctl
