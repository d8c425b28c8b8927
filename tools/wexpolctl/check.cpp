// wexpolctl check: whether the whole file can be read and is well formed.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

ExitCode Check(Call& call) {
  Database database(call.database);
  const bool sound = database.session().CheckIntegrity();
  call.report.Add("file", Text(call.database));
  call.report.Add("sound", Flag(sound));
  if (sound) return kDone;
  Listing& listing = call.report.AddListing("findings", {"finding"}, false);
  for (const std::string& finding : IntegrityFindings(database.handle()))
    listing.Add({Text(finding)});
  throw Failure{kFinding, "The database is damaged.",
                "Put the backup in its place with 'wexpolctl restore'."};
}

}  // namespace

Command CheckCommand() { return {"check", "Check the integrity of the whole file", {}, &Check}; }

}  // namespace wexpolctl
