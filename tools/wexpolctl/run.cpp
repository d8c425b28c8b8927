#include "tools/wexpolctl/run.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/wexpolctl/command_line.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/look_only.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

void CheckReadOnly(const CommandLine& line, Effect effect) {
  if (!line.read_only || effect == Effect::kLooks) return;
  throw Failure{kUsage,
                "'" + std::string(line.command.name) + "' would write, and --read-only forbids it.",
                "Leave --read-only out to let it write."};
}

void CheckIsFile(const std::wstring& database) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(ToPath(database), ignored)) return;
  throw Failure{kUsage, wexpol::WideToUtf8(database) + " is a folder, and no database.",
                "Name the file in it, or the folder by --root."};
}

ExitCode RunCommand(const CommandLine& line, Report& report, std::ostream& out,
                    std::ostream* terminal) {
  const Effect effect = line.command.EffectOf(line.options);
  CheckReadOnly(line, effect);
  if (!line.root.empty()) wexpol::RedirectMachine(AbsolutePath(line.root));
  // What is done to a file that is named is no business of this machine.
  const bool is_elsewhere = !line.database.empty() && line.root.empty();
  const wexpol::LookOnly look_only(effect != Effect::kChanges || is_elsewhere);
  Call call = {line.options,
               report,
               line.database.empty() ? CFilePaths::GetLocationDB() : AbsolutePath(line.database),
               line.Tool(),
               terminal,
               out,
               line.json,
               line.Place()};
  CheckIsFile(call.database);
  return line.command.run(call);
}

void Print(const Report& report, bool json, std::ostream& out, const Screen& screen) {
  if (json) {
    report.PrintJson(out);
  } else {
    report.PrintText(out, screen);
  }
}

// The failure that `action` ends with; one without a problem is none.
template <typename Action>
Failure FailureOf(Action&& action) {
  try {
    return {action(), "", ""};
  } catch (const Failure& thrown) {
    return thrown;
  } catch (const std::exception& thrown) {
    return {kCannotOpen, std::string("It could not be done: ") + thrown.what() + ".", ""};
  }
}

}  // namespace

int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
        const Screen& screen, bool err_is_terminal) {
  bool json = std::find(args.begin(), args.end(), "--json") != args.end();
  Report report;
  std::optional<CommandLine> line;
  Failure failure = FailureOf([&] {
    line = ParseCommandLine(args, out);
    return kDone;
  });
  if (line) {
    json = line->json;
    failure =
        FailureOf([&] { return RunCommand(*line, report, out, err_is_terminal ? &err : nullptr); });
    failure.next = AdviceFor(line->Tool(), failure.next);
  }
  const bool failed = !failure.problem.empty();
  if (failed && json) {
    report.Add("error", Text(failure.problem));
    report.Add("next", Text(failure.next));
  }
  if (line || failed) Print(report, json, out, screen);
  if (!out.flush()) {
    err << "The result cannot be written: the disk is full, or nobody reads it." << std::endl;
    return kFinding;
  }
  if (failed) {
    err << Printable(failure.problem) << (failure.next.empty() ? "" : " ")
        << Printable(failure.next) << std::endl;
  }
  return failure.code;
}

}  // namespace wexpolctl
