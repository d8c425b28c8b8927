// wexpolctl explain: why the agent is answered what it is.

#include "tools/wexpolctl/explain.h"

#include "tools/wexpolctl/commands.h"

namespace wexpolctl {
namespace {

constexpr struct {
  const char* option;  // Asks the question.
  ExitCode (*explain)(Call& call);
} kQuestions[] = {
    {"--file", &ExplainProgram},        {"--md5", &ExplainProgram},
    {"--category", &ExplainCategories}, {"--alert", &ExplainAlert},
    {"--schedule", &ExplainSchedule},
};

ExitCode Explain(Call& call) {
  ExitCode (*asked)(Call&) = nullptr;
  for (const auto& question : kQuestions) {
    if (!call.options.Has(question.option)) continue;
    if (asked && asked != question.explain) {
      throw Failure{kUsage, "These are several questions.", "Ask one at a time."};
    }
    asked = question.explain;
  }
  if (asked) return asked(call);
  throw Failure{kUsage, "Nothing tells what to explain.",
                "Give a program by --file NAME, --md5 HEX or both, or one of --category, --alert "
                "and --schedule."};
}

}  // namespace

Command ExplainCommand() {
  return {"explain",
          "Tell why a program is blocked, a category counts, an alert is not sent or a scan is due",
          {{"--file NAME", Option::kText, "A program's file name, without its folder"},
           {"--md5 HEX", Option::kText, "The MD5 digest of its content"},
           {"--login ID", Option::kNumber, "The login of the user who starts it"},
           {"--category NAME", Option::kTexts, "Categories of the web filter"},
           {"--alert ID", Option::kNumber, "An alert event type"},
           {"--schedule ID", Option::kNumber, "A scan or update schedule"}},
          &Explain,
          Effect::kLooks,
          "explain --file patience.exe --login 9001"};
}

}  // namespace wexpolctl
