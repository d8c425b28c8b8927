// wexpolctl sync: replaces tables by the console's documents.

#include <cstring>
#include <numeric>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/documents.h"
#include "tools/wexpolctl/progress.h"
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
// its table as it was.
class Synchronisation {
 public:
  Synchronisation(Database& database, bool keep_going, Report& report)
      : database_(database), keep_going_(keep_going), report_(report) {}

  void Run(const std::vector<SyncDocument>& documents, std::ostream* terminal) {
    const std::uint64_t total =
        std::accumulate(documents.begin(), documents.end(), std::uint64_t{0},
                        [](std::uint64_t sum, const auto& d) { return sum + d.text.size(); });
    Progress progress(terminal, total);
    Arrivals arrivals(database_.handle(), progress);
    Begin();
    for (const SyncDocument& document : documents) {
      const bool stored = Replace(document, arrivals);
      progress.End(document.text.size());
      if (!stored && !keep_going_) break;
    }
    const bool kept = keep_going_ || refused_ == 0;
    Step(kept ? TRANSACTION_COMMIT : TRANSACTION_ROLLBACK);
    ReportOutcomes(kept);
  }

  int refused() const { return refused_; }
  const std::string& first_problem() const { return first_problem_; }

 private:
  struct Outcome {
    std::string table;
    bool stored;
    std::int64_t rows_before;
  };

  // Takes the write lock at once: no document is to be blamed for the writing of another process.
  void Begin() {
    Step(TRANSACTION_BEGIN);
    if (!wexpol::Execute(database_.handle(), "UPDATE accounts SET id=id WHERE 0")) ThrowFailure();
  }

  void Step(TRANSACTION step) {
    if (!database_.session().Transaction(step)) ThrowFailure();
  }

  [[noreturn]] void ThrowFailure() {
    throw Failure{kFinding,
                  std::string("Nothing was stored: ") + sqlite3_errmsg(database_.handle()) + ".",
                  "Try again when no other process is writing."};
  }

  bool Replace(const SyncDocument& document, Arrivals& arrivals) {
    sqlite3* db = database_.handle();
    const std::string name = document.table->name();
    const std::int64_t before = CountRows(db, name).value_or(0);
    static_cast<void>(wexpol::Execute(db, "SAVEPOINT document"));
    arrivals.Begin(document.table->name());
    std::string error;
    const bool stored = document.text.find('\0') == std::string::npos &&
                        document.table->replace(database_.session(), document.text.c_str(), error);
    if (!stored) {
      NoteRefusal(document, CountRows(db, name).value_or(0), error);
      static_cast<void>(wexpol::Execute(db, "ROLLBACK TO document"));
    }
    static_cast<void>(wexpol::Execute(db, "RELEASE document"));
    outcomes_.push_back({document.table->name(), stored, before});
    return stored;
  }

  void ReportOutcomes(bool kept) {
    Listing& listing = report_.AddListing("tables", {"table", "result", "rows before", "rows now"});
    for (const Outcome& outcome : outcomes_) {
      const char* result = !outcome.stored ? "refused" : kept ? "stored" : "taken back";
      listing.Add({Text(outcome.table), Text(result), Number(outcome.rows_before),
                   Number(CountRows(database_.handle(), outcome.table).value_or(0))});
    }
  }

  void NoteRefusal(const SyncDocument& document, std::int64_t stored, const std::string& error) {
    ++refused_;
    const Refusal refusal = ExplainRefusal(document, stored, error);
    if (!refusals_) {
      refusals_ = &report_.AddListing("refusals",
                                      {"table", "document", "record", "reason", "error object"});
    }
    refusals_->Add({Text(document.table->name()), Text(document.source),
                    refusal.record ? Number(refusal.record) : Nothing(), Text(refusal.reason),
                    error.empty() ? Nothing() : Json(error)});
    if (first_problem_.empty()) {
      first_problem_ = document.source + " was refused";
      if (refusal.record) first_problem_ += " at record " + std::to_string(refusal.record);
      first_problem_ += ": " + refusal.reason;
      if (first_problem_.back() != '.') first_problem_ += '.';
    }
  }

  Database& database_;
  const bool keep_going_;
  Report& report_;
  std::vector<Outcome> outcomes_;
  Listing* refusals_ = nullptr;
  int refused_ = 0;
  std::string first_problem_;
};

ExitCode Sync(Call& call) {
  std::vector<std::string> skipped;
  const auto documents = CollectDocuments(call.options.Texts("DOCUMENT"), skipped);
  Database database(call.database, Database::kWrite);
  const bool keep_going = call.options.Has("--keep-going");
  Synchronisation synchronisation(database, keep_going, call.report);
  synchronisation.Run(documents, call.terminal);
  for (const std::string& name : skipped)
    call.report.AddLine("Skipped: " + name + " is named after no table.");
  if (synchronisation.refused() == 0) return kDone;
  throw Failure{kFinding,
                synchronisation.first_problem() +
                    (keep_going ? " Its table keeps the rows it had." : " Nothing was stored."),
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
            "Store what is accepted; a table whose document is refused keeps its rows"}},
          &Sync,
          Effect::kChanges};
}

}  // namespace wexpolctl
