// wexpolctl bundle: what support asks for, in one archive and without secrets.

#include <algorithm>
#include <sstream>

#include "tools/wexpolctl/archive.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/new_file.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/version.h"
#include "wexpol/records/statement.h"

namespace wexpolctl {
namespace {

constexpr const char* kIncluded[] = {"status",   "doctor", "tables",    "versions", "identity",
                                     "services", "alerts", "next-scan", "time",     "config list"};
constexpr std::size_t kLogTail = std::size_t{256} * 1024;

// Gathers the files, and what of them could not be read.
class Bundle {
 public:
  explicit Bundle(Report& report)
      : listing_(report.AddListing("files", {"file", "size", "problem"})) {}

  void Add(const std::string& name, const std::string& text, const std::string& problem = "") {
    if (!archive_.Add(name, text)) throw Failure{kFinding, "There is not enough memory.", ""};
    listing_.Add({Text(name), Size(text.size()), problem.empty() ? Nothing() : Text(problem)});
    if (!problem.empty()) problems_ += name + ": " + problem + '\n';
  }

  // What a command answers, as a text and as JSON.
  void AddAnswer(const Command& command, const Call& call) {
    Report report;
    const Options none({});
    Call inner = {none, report, call.database, call.tool, nullptr, call.out};
    const Failure failure = Heard(command, inner);
    std::ostringstream text;
    std::ostringstream json;
    report.PrintText(text);
    text << failure.problem << '\n';
    report.PrintJson(json);
    std::string name = command.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    Add(name + ".txt", text.str(), failure.problem);
    Add(name + ".json", json.str());
  }

  std::string Finish() {
    Add("problems.txt", problems_.empty() ? "Everything could be read.\n" : problems_);
    std::string archive = archive_.Finish();
    if (archive.empty()) throw Failure{kFinding, "There is not enough memory.", ""};
    return archive;
  }

 private:
  static Failure Heard(const Command& command, Call& call) {
    try {
      return {command.run(call), {}, {}};
    } catch (const Failure& failure) {
      return failure;
    } catch (const std::exception& failure) {
      return {kCannotOpen, failure.what(), {}};
    }
  }

  Archive archive_;
  Listing& listing_;
  std::string problems_;
};

std::string About(const Call& call) {
  Report report;
  report.Add("tool", Text("wexpolctl " WEXPOL_VERSION));
  report.Add("system", Text(wexpol::SystemName()));
  report.Add("made", Instant(wexpol::NowUtc()));
  report.Add("database", Text(call.database));
  std::ostringstream text;
  report.PrintText(text);
  return text.str();
}

void AddSchema(Bundle& bundle, const Call& call) {
  std::string schema;
  std::string problem;
  try {
    Database database(call.database);
    wexpol::Statement select(database.handle(),
                             "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY rowid");
    int code;
    while ((code = select.Step()) == SQLITE_ROW) schema.append(select.Text(0)).append(";\n");
    if (code != SQLITE_DONE) problem = sqlite3_errmsg(database.handle());
  } catch (const Failure& failure) {
    problem = failure.problem;
  }
  bundle.Add("schema.sql", schema, problem);
}

// From the first whole line of the last part.
void AddLog(Bundle& bundle) {
  const auto log = ReadFile(CFilePaths::GetLocationLogFile());
  std::string tail = log.value_or("");
  if (tail.size() > kLogTail) tail.erase(0, tail.find('\n', tail.size() - kLogTail) + 1);
  bundle.Add("log.txt", tail, log ? "" : "There is no log, or it cannot be read.");
}

ExitCode MakeBundle(Call& call) {
  const std::wstring path = AbsolutePath(call.options.Text("FILE"));
  RequireNew(path);
  call.report.Add("bundle", Text(path));
  Bundle bundle(call.report);
  bundle.Add("about.txt", About(call));
  for (const auto& make : kCommands) {
    const Command command = make();
    const auto is = [&](const char* name) { return std::string_view(name) == command.name; };
    if (std::any_of(std::begin(kIncluded), std::end(kIncluded), is)) {
      bundle.AddAnswer(command, call);
    }
  }
  AddSchema(bundle, call);
  AddLog(bundle);
  WriteNewFile(path, bundle.Finish());
  return kDone;
}

}  // namespace

Command BundleCommand() {
  return {"bundle",
          "Gather statuses, schema and the end of the log for support; secrets are left out",
          {{"FILE", Option::kText, "The archive to make, such as wexpol.zip", true}},
          &MakeBundle,
          Effect::kWritesFile,
          "bundle wexpol.zip"};
}

}  // namespace wexpolctl
