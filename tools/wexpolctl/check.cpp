// wexpolctl check: whether the whole file can be read and is well formed.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

ExitCode Check(Call& call) {
  Database database(call.database);
  const auto findings = Findings(database.handle());
  call.report.Add("file", Text(call.database));
  call.report.Add("sound", Flag(findings.empty()));
  if (findings.empty()) return kDone;
  Listing& listing = call.report.AddListing("findings", {"finding"});
  for (const std::string& finding : findings) listing.Add({Text(finding)});
  throw Failure{kFinding, "The database is damaged or incomplete.",
                "Put the backup in its place with 'wexpolctl restore'."};
}

}  // namespace

Command CheckCommand() {
  return {
      "check", "Check the integrity of the whole file, and that its tables are there", {}, &Check};
}

}  // namespace wexpolctl
