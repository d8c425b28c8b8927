// wexpolctl sync: replaces tables by the console's documents.

#include <array>
#include <cstring>
#include <numeric>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/documents.h"
#include "tools/wexpolctl/progress.h"
#include "tools/wexpolctl/rehearsal.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

// Counts the records that arrive in one table at a time.
class Arrivals {
 public:
  Arrivals(sqlite3* db, Progress& progress) : db_(db), progress_(progress) {
    sqlite3_update_hook(db_, &Arrivals::OnChange, this);
  }
  ~Arrivals() { sqlite3_update_hook(db_, nullptr, nullptr); }
  Arrivals(const Arrivals&) = delete;
  Arrivals& operator=(const Arrivals&) = delete;

  void Begin(const char* table) {
    table_ = table;
    count_ = 0;
    progress_.Begin(table);
  }

 private:
  static void OnChange(void* self, int change, const char*, const char* table, sqlite3_int64) {
    auto* arrivals = static_cast<Arrivals*>(self);
    if (change != SQLITE_INSERT || std::strcmp(table, arrivals->table_) != 0) return;
    arrivals->progress_.Count(++arrivals->count_);
  }

  sqlite3* db_;
  Progress& progress_;
  const char* table_ = "";
  std::int64_t count_ = 0;
};

// One transaction over all documents. Where it is to keep going, a document that is refused leaves
// its table as it was. A rehearsal tells what would come of it.
class Synchronisation {
 public:
  Synchronisation(CPolicyDB& session, bool keep_going, const Rehearsal* rehearsal, Report& report)
      : session_(session),
        db_(wexpol::HandleOf(session)),
        keep_going_(keep_going),
        rehearsal_(rehearsal),
        report_(report) {}

  void Run(const std::vector<SyncDocument>& documents, std::ostream* terminal) {
    const std::uint64_t total =
        std::accumulate(documents.begin(), documents.end(), std::uint64_t{0},
                        [](std::uint64_t sum, const auto& d) { return sum + d.text.size(); });
    Progress progress(terminal, total);
    Arrivals arrivals(db_, progress);
    Begin();
    for (const SyncDocument& document : documents) {
      arrivals.Begin(document.table->name());
      const bool good = Replace(document, documents.size() > 1);
      progress.End(document.text.size());
      if (!good && !keep_going_) break;
    }
    const bool kept = keep_going_ || refused_ == 0;
    Step(kept ? TRANSACTION_COMMIT : TRANSACTION_ROLLBACK);
    ReportOutcomes(kept);
  }

  int refused() const { return refused_; }
  const std::string& first_problem() const { return first_problem_; }

 private:
  struct Outcome {
    const SyncTable* table;
    const char* refusal;  // Null when the document was stored.
    std::int64_t rows_before;
    std::array<std::int64_t, 3> changes;  // By the kind of a change.
  };

  // Takes the write lock at once: no document is to be blamed for the writing of another process.
  void Begin() {
    Step(TRANSACTION_BEGIN);
    if (!wexpol::Execute(db_, "UPDATE accounts SET id=id WHERE 0")) ThrowFailure();
  }

  void Step(TRANSACTION step) {
    if (!session_.Transaction(step)) ThrowFailure();
  }

  [[noreturn]] void ThrowFailure() {
    throw Failure{kFinding, std::string("Nothing was stored: ") + sqlite3_errmsg(db_) + ".",
                  "Try again when no other process is writing."};
  }

  // Whether it is as it should be: stored, or refused by the table that does so every time and, as
  // one of several, is no fault of the documents.
  bool Replace(const SyncDocument& document, bool one_of_several) {
    Outcome outcome = {
        document.table, nullptr, CountRows(db_, document.table->name()).value_or(0), {}};
    const auto refusal = StoreDocument(session_, document);
    const bool expected = refusal && refusal->expected && one_of_several;
    if (refusal) outcome.refusal = expected ? "refused as expected" : "refused";
    if (refusal) NoteRefusal(document, *refusal, expected);
    if (!refusal && rehearsal_) {
      for (const RowChange& change : rehearsal_->ChangesOf(document.table->record_class->table())) {
        ++outcome.changes[change.kind];
      }
    }
    outcomes_.push_back(outcome);
    return !refusal || expected;
  }

  void ReportOutcomes(bool kept) {
    std::vector<std::string> columns = {"table", "result", "rows before", "rows now"};
    if (rehearsal_) columns.insert(columns.end(), {"added", "removed", "changed"});
    Listing& listing = report_.AddListing("tables", std::move(columns));
    const std::string prefix = rehearsal_ ? "would be " : "";
    for (const Outcome& outcome : outcomes_) {
      const std::string result =
          outcome.refusal ? outcome.refusal : prefix + (kept ? "stored" : "taken back");
      const char* name = outcome.table->name();
      std::vector<Cell> row = {Text(name), Text(result), Number(outcome.rows_before),
                               Number(CountRows(db_, name).value_or(0))};
      if (rehearsal_) {
        for (const std::int64_t count : outcome.changes) row.push_back(Number(count));
      }
      listing.Add(std::move(row));
    }
  }

  void NoteRefusal(const SyncDocument& document, const Refusal& refusal, bool expected) {
    if (!refusals_) {
      refusals_ = &report_.AddListing(
          "refusals", {"table", "document", "record", "expected", "reason", "error object"});
    }
    refusals_->Add({Text(document.table->name()), Text(document.source),
                    refusal.record ? Number(refusal.record) : Nothing(), Flag(expected),
                    Text(refusal.reason),
                    refusal.error_object.empty() ? Nothing() : Json(refusal.error_object)});
    if (expected) return;
    if (refused_++ == 0) first_problem_ = InWords(document, refusal);
  }

  CPolicyDB& session_;
  sqlite3* db_;
  const bool keep_going_;
  const Rehearsal* rehearsal_;  // Null when it is meant.
  Report& report_;
  std::vector<Outcome> outcomes_;
  Listing* refusals_ = nullptr;
  int refused_ = 0;
  std::string first_problem_;
};

ExitCode Sync(Call& call) {
  std::vector<std::string> skipped;
  const auto documents = CollectDocuments(call.options.Texts("DOCUMENT"), skipped);
  const bool dry_run = call.options.Has("--dry-run");
  const bool keep_going = call.options.Has("--keep-going");
  Database database(call.database, dry_run ? Database::kLook : Database::kWrite);
  std::optional<Rehearsal> rehearsal;
  if (dry_run) rehearsal.emplace(database.handle());
  Synchronisation synchronisation(rehearsal ? rehearsal->session() : database.session(), keep_going,
                                  rehearsal ? &*rehearsal : nullptr, call.report);
  synchronisation.Run(documents, call.terminal);
  for (const std::string& name : skipped)
    call.report.AddLine("Skipped: " + name + " is named after no table.");
  if (rehearsal) call.report.AddLine("This was tried on a copy: nothing was stored.");
  if (synchronisation.refused() == 0) return kDone;
  const char* outcome = keep_going ? " Its table keeps the rows it had." : " Nothing was stored.";
  throw Failure{kFinding, synchronisation.first_problem() + outcome,
                keep_going ? "Correct the document and synchronise it again."
                           : "Correct the document, or store the others with --keep-going."};
}

}  // namespace

Command SyncCommand() {
  return {"sync",
          "Replace tables by the console's documents, in one transaction",
          {{"DOCUMENT", Option::kTexts,
            "TABLE.json files, folders of them, or names of tables: which of a folder to take, or "
            "whose document comes by a file of another name or by standard input",
            true},
           {"--keep-going", Option::kFlag,
            "Store what is accepted; a table whose document is refused keeps its rows"},
           {"--dry-run", Option::kFlag, "Only tell what would be stored, refused and changed",
            false, Effect::kLooks}},
          &Sync,
          Effect::kChanges,
          "sync documents --dry-run"};
}

}  // namespace wexpolctl
