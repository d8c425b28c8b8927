// wexpolctl tables: every table with its number of rows.

#include <set>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/tables.h"

namespace wexpolctl {
namespace {

ExitCode Tables(Call& call) {
  Database database(call.database);
  const std::vector<std::string> present = TableNames(database.handle());
  std::set<std::string> names(present.begin(), present.end());
  for (const SyncTable& table : SyncTables()) names.insert(table.name());

  Listing& listing = call.report.AddListing("tables", {"table", "rows", "filled by"});
  std::string unreadable;
  for (const std::string& name : names) {
    const auto rows = CountRows(database.handle(), name);
    if (!rows) unreadable += (unreadable.empty() ? "" : ", ") + name;
    listing.Add({Text(name), rows ? Number(*rows) : Nothing(),
                 Text(FindSyncTable(name) ? "console" : "agent")});
  }
  if (unreadable.empty()) return kDone;
  throw Failure{kFinding, "Missing or unreadable: " + unreadable + ".",
                "Check the file with 'wexpolctl check', or put the backup in its place with "
                "'wexpolctl restore'."};
}

}  // namespace

Command TablesCommand() {
  return {"tables", "Show every table with its number of rows", {}, &Tables};
}

}  // namespace wexpolctl
