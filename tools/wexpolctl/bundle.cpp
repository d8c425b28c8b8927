// wexpolctl bundle: what support asks for, in one folder and without secrets.

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

constexpr const char* kIncluded[] = {"status",   "doctor", "tables",    "versions", "identity",
                                     "services", "alerts", "next-scan", "time",     "config list"};
constexpr std::size_t kLogTail = std::size_t{256} * 1024;

std::string Heard(const Command& command, const Call& call) {
  Report report;
  const Options none({});
  Call inner = {none, report, call.database, call.tool, nullptr};
  std::ostringstream out;
  Failure failure;
  try {
    command.run(inner);
  } catch (const Failure& thrown) {
    failure = thrown;
  }
  report.PrintText(out);
  out << failure.problem << '\n';
  return out.str();
}

// From the first whole line of the last part.
std::string LogTail() {
  std::string log = ReadFile(CFilePaths::GetLocationLogFile()).value_or("");
  if (log.size() <= kLogTail) return log;
  const std::size_t line = log.find('\n', log.size() - kLogTail);
  return line == log.npos ? "" : log.substr(line + 1);
}

ExitCode Bundle(Call& call) {
  const std::wstring folder = AbsolutePath(call.options.Text("FOLDER"));
  std::error_code error;
  std::filesystem::create_directories(ToPath(folder), error);
  Listing& listing = call.report.AddListing("files", {"file"});
  const auto write = [&](const std::string& name, const std::string& text) {
    const std::wstring path = FromPath(ToPath(folder) / name);
    if (!WriteFile(path, text)) {
      throw Failure{kCannotOpen, wexpol::WideToUtf8(path) + " cannot be written.",
                    "Name a folder that this user may write to."};
    }
    listing.Add({Text(path)});
  };
  for (const auto& make : kCommands) {
    const Command command = make();
    const std::string_view name = command.name;
    if (std::count(std::begin(kIncluded), std::end(kIncluded), name) == 0) continue;
    write(std::string(name.substr(0, name.find(' '))) + ".txt", Heard(command, call));
  }
  write("log.txt", LogTail());
  return kDone;
}

}  // namespace

Command BundleCommand() {
  return {"bundle",
          "Gather statuses and the end of the log for support; secrets are left out",
          {{"FOLDER", Option::kText, "Where to put the files", true}},
          &Bundle,
          Effect::kWritesFile};
}

}  // namespace wexpolctl
