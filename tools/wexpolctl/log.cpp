// wexpolctl log: the end of the agent's log, and what is added to it.

#include <chrono>
#include <thread>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

constexpr std::int64_t kLines = 20;
constexpr std::chrono::milliseconds kPause(200);

// From the first whole line of the last ones on.
std::size_t StartOfLast(const std::string& text, std::int64_t lines) {
  std::size_t at = text.size();
  if (lines <= 0) return at;
  if (text.ends_with('\n')) --at;
  for (; at > 0; --at) {
    if (text[at - 1] == '\n' && --lines <= 0) break;
  }
  return lines > 0 ? 0 : at;
}

// The lines as a terminal may have them.
std::string Shown(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    shown += Printable(line) + '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return shown;
}

// Prints what is added, whole lines at a time, until the time is over or nobody reads it. A log
// that has become shorter was begun anew.
void Follow(const std::wstring& path, std::size_t printed, std::ostream& out,
            std::optional<std::int64_t> seconds) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::seconds(seconds.value_or(0));
  while (out.flush() && (!seconds || Clock::now() < end)) {
    std::this_thread::sleep_for(kPause);
    const std::uint64_t size = wexpol::FileSize(path).value_or(printed);
    if (size == printed) continue;
    if (size < printed) printed = 0;
    const std::string log = ReadFile(path).value_or("");
    const std::size_t whole = log.rfind('\n') + 1;  // 0 where there is none.
    if (whole > printed) out << Shown(std::string_view(log).substr(printed, whole - printed));
    printed = std::max(printed, whole);
  }
}

ExitCode Log(Call& call) {
  const bool follow = call.options.Has("--follow");
  if (follow && call.json) {
    throw Failure{kUsage, "What is followed is no one object.", "Leave out --json or --follow."};
  }
  const std::wstring path = CFilePaths::GetLocationLogFile();
  const auto log = ReadFile(path);
  if (!log) {
    throw Failure{kCannotOpen, "There is no log at " + wexpol::WideToUtf8(path) + " to read.",
                  "See 'wexpolctl doctor'."};
  }
  const std::size_t start = StartOfLast(*log, call.options.Number("--lines").value_or(kLines));
  const std::string last = Shown(std::string_view(*log).substr(start));
  if (follow) {
    call.out << last;
    Follow(path, log->size(), call.out, call.options.Number("--for"));
    return kDone;
  }
  if (call.json) call.report.Add("file", Text(path));
  call.report.AddBlock("lines", last);
  return kDone;
}

}  // namespace

Command LogCommand() {
  return {"log",
          "Show the end of the agent's log",
          {{"--lines NUMBER", Option::kNumber, "So many lines; 20 when it is left out"},
           {"--follow", Option::kFlag, "Go on showing what is added, until Ctrl-C"},
           {"--for SECONDS", Option::kNumber, "Follow no longer than this"}},
          &Log,
          Effect::kLooks,
          "log --follow"};
}

}  // namespace wexpolctl
