#include "sweeps/faults.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "wexpol/policydb/connection.h"

namespace sweeps {
namespace {

constexpr const char* kKindNames[kFaultKinds] = {
    "new",      "malloc", "engine memory", "full disk", "write", "short write",
    "truncate", "sync",   "size",          "read",      "lock",  "shared memory"};

struct Point {
  const Operation* operation;
  Plan plan;
};

std::string Describe(const Point& point) {
  return point.operation->name + ", " + kKindNames[point.plan.kind] + ' ' +
         std::to_string(point.plan.nth) + (point.plan.from_then_on ? " and on" : "");
}

// What an operation answers and leaves where nothing fails, and in how many places it could.
struct Expected {
  std::string answer;
  Rows before;
  Rows after;
  std::array<long, kFaultKinds> places;
};

struct Outcome {
  std::string answer;
  Rows rows;
};

constexpr int kMarkedKind = 4711;

// The operation with the plan, and the writes of the same session and of others after it.
Outcome Run(const Store& store, const Point& point, Figures& figures) {
  store.Reset();
  Outcome outcome;
  const auto bad = [&](Bad what, const char* why) { figures.Add(what, Describe(point) + why); };
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 100);
  plan = point.plan;
  places = {};
  outcome.answer = point.operation->run(db);

  if (!db.IsValidDB()) db.OpenDB(DatabasePath().c_str(), kReadWrite, 100);
  if (db.AddAlertSent(kMarkedKind) != SQLITE_DONE) bad(kLockKept, ": the next write fails");
  if (!sqlite3_get_autocommit(wexpol::HandleOf(db))) bad(kTransactionOpen, "");
  const Handle other = OpenRaw();
  int busy = 1;
  sqlite3_stmt* checkpoint = nullptr;
  sqlite3_prepare_v2(other.get(), "PRAGMA wal_checkpoint(TRUNCATE)", -1, &checkpoint, nullptr);
  if (sqlite3_step(checkpoint) == SQLITE_ROW) busy = sqlite3_column_int(checkpoint, 0);
  sqlite3_finalize(checkpoint);
  if (busy) bad(kLockKept, "");
  const std::string condition = " FROM alerts_sent WHERE event_type_id = 4711";
  if (!Execute(other.get(), "DELETE" + condition) || sqlite3_changes(other.get()) != 1) {
    bad(kMixed, ": a write that was told is lost");
  }
  db.CloseDB();
  auto rows = ReadRows(other.get());
  if (!rows || !CPolicyDB(kAccessCode, DatabasePath().c_str(), kReadWrite, 100).CheckIntegrity()) {
    bad(kDamage, "");
  }
  if (rows) outcome.rows = std::move(*rows);
  return outcome;
}

// Whether the rows may be there after that answer.
bool MayLeave(Leaves leaves, const Expected& expected, const Outcome& outcome) {
  const Rows& rows = outcome.rows;
  if (leaves == Leaves::kNothing || rows == expected.after) return true;
  const bool succeeded = outcome.answer == expected.answer && expected.answer != "0";
  if (!succeeded || leaves == Leaves::kLearns) {
    if (rows == expected.before) return true;
  }
  Rows both;
  std::ranges::merge(expected.before, expected.after, std::back_inserter(both));
  switch (leaves) {
    case Leaves::kParts:
      return !succeeded && std::ranges::includes(both, rows);
    case Leaves::kReplaces:
      return std::ranges::includes(both, rows) &&
             (!succeeded || std::ranges::includes(rows, expected.after));
    default:
      return false;
  }
}

void Judge(const Store& store, const Point& point, const Expected& expected, Figures& figures) {
  const Outcome outcome = Run(store, point, figures);
  const std::string& answer = outcome.answer;
  if (answer == "silent") {
    figures.Add(kSilent, Describe(point));
  } else if (answer != expected.answer && answer != "0" && answer != "-1") {
    figures.Add(kFalseSuccess, Describe(point) + ": " + answer.substr(0, 200));
  }
  if (!MayLeave(point.operation->leaves, expected, outcome)) {
    figures.Add(kMixed, Describe(point) + " answered " + answer.substr(0, 20));
  }
}

// Twice, because what is set up once per process is no part of an operation.
Expected Measure(const Store& store, const Operation& operation) {
  Expected expected;
  store.Reset();
  expected.before = ReadRows(OpenRaw().get()).value_or(Rows());
  for (int i = 0; i < 2; ++i) {
    Figures none;
    const Outcome outcome = Run(store, {&operation, {}}, none);
    expected.answer = outcome.answer;
    expected.after = outcome.rows;
    expected.places = places;
  }
  return expected;
}

// A file that holds all samples, and the backup one row less.
void Fill(Store& store) {
  StoreSamples();
  store.Keep(true);
  CPolicyDB(kAccessCode, DatabasePath().c_str(), kReadWrite, 100).AddAlertSent(1);
  store.Keep(false);
}

}  // namespace

void SweepFaults(std::span<const FaultKind> kinds, const Options& options, Figures& figures) {
  Store store;
  Fill(store);
  std::map<const Operation*, Expected> expected;
  std::vector<Point> points;
  for (const Operation& operation : Operations()) {
    const Expected& its = expected[&operation] = Measure(store, operation);
    if (its.answer == "0" || its.answer == "-1") {
      figures.Add(kFalseSuccess, operation.name + " fails without a fault");
    }
    for (const FaultKind kind : kinds) {
      for (long nth = 1; nth <= its.places[kind]; ++nth) {
        for (const bool from_then_on : {false, true}) {
          points.push_back({&operation, {kind, nth, from_then_on}});
        }
      }
    }
  }
  Random random(options.seed);
  std::ranges::shuffle(points, random);
  const long count = std::min(options.size, static_cast<long>(points.size()));
  const auto at = [&](long i) -> const Point& { return points[static_cast<std::size_t>(i)]; };
  RunIsolated(
      count, figures, [&](long i) { return Describe(at(i)); },
      [&](long i, Figures& each) { Judge(store, at(i), expected[at(i).operation], each); });
}

}  // namespace sweeps
