// A restore that finds the disk full, or whose process is killed, at any step, while another
// process has the file open with much in its log.

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "sweeps/disk.h"
#include "sweeps/faults.h"
#include "tests/support/child_process.h"
#include "wexpol/policydb/connection.h"

namespace {

using namespace sweeps;

constexpr int kHeldRows = 3000;

enum class Fault { kNone, kFullDisk, kKill };

std::wstring ChangesPath() { return Beside(L".changes"); }

// Restores with the fault at one of the changes of a file, and notes how many there were.
int Restore(const Arguments& arguments) {
  const auto fault = static_cast<Fault>(std::atoi(arguments[0].c_str()));
  const long at = std::atol(arguments[1].c_str());
  const Disk disk;
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
  long changes = 0;
  Disk::before_change = [&] {
    if (++changes == at && fault == Fault::kKill) {
      std::raise(9);
      std::_Exit(9);
    }
  };
  plan = {kFull, fault == Fault::kFullDisk ? at : 0, true};
  const bool opened = UnderFaults([&] { return db.RestoreDB(); });
  plan = {};
  WriteFileBytes(ChangesPath(), std::to_string(changes));
  return opened ? 0 : 1;
}

const ChildFunction kChild("restore", &Restore);

// A process that has just written many rows, none of which is in the database itself yet.
void FillTheLog(CPolicyDB& db) {
  Execute(wexpol::HandleOf(db), "PRAGMA wal_autocheckpoint=0");
  std::string rows = "[{\"id\": 1}";
  for (int id = 2; id <= kHeldRows; ++id) rows += ",{\"id\": " + std::to_string(id) + "}";
  db.Transaction(TRANSACTION_BEGIN);
  db.AddLogins((rows + "]").c_str());
  db.Transaction(TRANSACTION_COMMIT);
}

// Every process, old or new, sees one of the two contents, and the same; what is written then
// stays.
void Judge(const std::string& point, CPolicyDB& holder, const std::vector<Rows>& expected,
           Figures& figures) {
  const auto held = ReadRows(wexpol::HandleOf(holder));
  if (!held || std::ranges::find(expected, *held) == expected.end()) figures.Add(kMixed, point);
  const Handle other = OpenRaw();
  if (ReadRows(other.get()) != held) figures.Add(kMixed, point + ": a new process sees another");
  if (!holder.CheckIntegrity()) figures.Add(kDamage, point);
  if (!holder.AddLogins("{\"id\": 9999}")) figures.Add(kLockKept, point);
  holder.CloseDB();
  const std::string select = "DELETE FROM logins WHERE id=9999";
  if (!Execute(other.get(), select) || sqlite3_changes(other.get()) != 1) {
    figures.Add(kMixed, point + ": a later write is lost");
  }
  if (ReadRows(other.get()) != held) figures.Add(kMixed, point + ": changed by the close");
}

void Run(const Options& options, Figures& figures) {
  Store store;
  StoreSamples();
  store.Keep(true);
  const Rows backup = ReadRows(OpenRaw().get()).value_or(Rows());
  {
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
    db.ClearLogins();
    StoreGeneration(db, GenerationDocument(1).c_str());
    db.ClearLogins();
  }
  store.Keep(false);

  const auto restore = [&](const std::string& point, Fault fault, long at, bool whole) {
    store.Reset();
    CPolicyDB holder(kAccessCode, DatabasePath().c_str(), kReadWrite, 5000);
    FillTheLog(holder);
    std::vector<Rows> expected = {backup};
    if (!whole) expected.push_back(ReadRows(wexpol::HandleOf(holder)).value_or(Rows()));
    ChildProcess child(store.folder(), "restore",
                       {std::to_string(static_cast<int>(fault)), std::to_string(at)});
    const bool ended = child.Succeeded();
    if (ended == (fault == Fault::kKill)) figures.Add(kCrash, point);
    Judge(point, holder, expected, figures);
    ++figures.points;
  };
  restore("restore", Fault::kNone, 0, true);
  const long changes = std::atol(ReadFileBytes(ChangesPath()).c_str());
  if (changes < 2) figures.Add(kFalseSuccess, "a restore changes no file");

  Random random(options.seed);
  while (figures.points < options.size && changes) {
    const Fault fault = Below(random, 2) ? Fault::kFullDisk : Fault::kKill;
    const long at = 1 + Below(random, changes);
    restore(
        (fault == Fault::kKill ? "restore, killed at change " : "restore, disk full at change ") +
            std::to_string(at),
        fault, at, false);
  }
}

const Sweep kSweep("restores", 1000, 20, &Run);

}  // namespace
