// wexpolctl versions: which versions of the shared tables are here.

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/records/global_table_list.h"
#include "wexpol/records/global_tables.h"

namespace wexpolctl {
namespace {

ExitCode Versions(Call& call) {
  Database database(call.database, Database::kAsk);
  std::uint64_t empty = 0;
  std::string report;
  database.session().GetGlobalTableJson(empty, report);

  call.report.Add("report", Text(report));
  call.report.Add("empty mask", Number(static_cast<std::int64_t>(empty)));
  Listing& listing = call.report.AddListing("tables", {"table", "bit", "version", "state"});
  const char* at = report.c_str();
  for (const wexpol::GlobalTable& table : wexpol::kGlobalTables) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%" PRIu64 ",", table.bit);
    const char* found = std::strstr(at, entry);
    if (!found) throw Failure{kFinding, "The version report cannot be read.", ""};
    at = found + std::strlen(entry);
    listing.Add({Text(table.name), Number(static_cast<std::int64_t>(table.bit)),
                 Number(std::strtoll(at, nullptr, 10)),
                 Text(empty & table.bit ? "empty" : "present")});
  }
  return kDone;
}

}  // namespace

Command VersionsCommand() {
  return {"versions", "Show the version report of the shared tables", {}, &Versions};
}

}  // namespace wexpolctl
