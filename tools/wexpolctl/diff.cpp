// wexpolctl diff: how documents differ from the tables that they would replace.

#include <array>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/documents.h"
#include "tools/wexpolctl/rehearsal.h"

namespace wexpolctl {
namespace {

constexpr std::array<const char*, 3> kKinds = {"added", "removed", "changed"};

// One line for each column that differs; of a row that is only in one of the two, its key is
// enough.
void AddChange(const SyncTable& table, const RowChange& change, Listing& listing) {
  const bool has_key = change.key.json != Nothing().json;
  const Cell name = Text(table.name());
  const Cell kind = Text(kKinds[change.kind]);
  if (change.kind != RowChange::kChanged && has_key) {
    listing.Add({name, kind, change.key, Nothing(), Nothing(), Nothing()});
    return;
  }
  for (const RowChange::Column& column : change.columns) {
    listing.Add({name, kind, change.key, Text(column.name), column.before, column.after});
  }
}

ExitCode Diff(Call& call) {
  std::vector<std::string> skipped;
  const auto documents = CollectDocuments(call.options.Texts("DOCUMENT"), skipped);
  Database database(call.database);
  Rehearsal rehearsal(database.handle());
  Listing& rows = call.report.AddListing(
      "rows", {"table", "row", "key", "column", "in the database", "in the document"});
  Listing& tables = call.report.AddListing("tables", {"table", kKinds[0], kKinds[1], kKinds[2]});
  std::string problem;
  for (const SyncDocument& document : documents) {
    const SyncTable& table = *document.table;
    const auto refusal = StoreDocument(rehearsal.session(), document);
    if (refusal && refusal->expected && documents.size() > 1) {
      call.report.AddLine(std::string(table.name()) + " refuses every record, as expected.");
      continue;
    }
    if (refusal && problem.empty()) problem = InWords(document, *refusal);
    if (refusal) continue;
    std::array<std::int64_t, 3> counts = {};
    for (const RowChange& change : rehearsal.ChangesOf(table.record_class->table())) {
      ++counts[change.kind];
      AddChange(table, change, rows);
    }
    if (counts == std::array<std::int64_t, 3>{}) continue;
    tables.Add({Text(table.name()), Number(counts[0]), Number(counts[1]), Number(counts[2])});
  }
  if (!problem.empty()) {
    throw Failure{kFinding, problem, "What a table refuses cannot be compared with it."};
  }
  if (!tables.empty()) return kFinding;
  call.report.AddLine("Nothing differs.");
  return kDone;
}

}  // namespace

Command DiffCommand() {
  return {"diff",
          "Compare documents with the tables that they would replace; secrets are masked",
          {{"DOCUMENT", Option::kTexts,
            "As for sync: TABLE.json files, folders of them, or TABLE FILE", true}},
          &Diff,
          Effect::kLooks,
          "diff devices answer.json"};
}

}  // namespace wexpolctl
