// wexpolctl filter: what the web filter knows of categories.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

ExitCode CheckCategories(Call& call) {
  Database database(call.database, Database::kAsk);
  CPolicyDB& session = database.session();
  std::string unknown;
  Listing& listing = call.report.AddListing(
      "categories", {"category", "id", "movies or tv", "pornography", "client caches"});
  for (const std::string& name : call.options.Texts("NAME")) {
    wexpol::Statement select(database.handle(),
                             "SELECT id, client_should_cache FROM categories WHERE name=?", name);
    const bool known = select.StepRow();
    if (!known) unknown += (unknown.empty() ? "'" : ", '") + name + "'";
    const std::set<std::wstring> names = {wexpol::Utf8ToWide(name)};
    listing.Add({Text(name), known ? Number(select.Int(0)) : Nothing(),
                 Flag(session.AnyMoviesAndTvCategories(names)),
                 Flag(session.IsPornCategoryPresent(names)),
                 known && !select.IsNull(1) ? Flag(select.Int(1) != 0) : Nothing()});
  }
  if (unknown.empty()) return kDone;
  throw Failure{kFinding, "There is no category " + unknown + ".",
                "All are shown by 'wexpolctl list categories'."};
}

}  // namespace

Command FilterCheckCommand() {
  return {"filter check",
          "Ask the web filter's questions of categories",
          {{"NAME", Option::kTexts, "The names of categories", true}},
          &CheckCategories};
}

}  // namespace wexpolctl
