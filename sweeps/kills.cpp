// A process that is killed while it synchronises, learns and answers: at a file operation, or after
// a time.

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "sweeps/disk.h"
#include "sweeps/store.h"
#include "tests/support/child_process.h"
#include "wexpol/platform/text.h"

namespace {

using namespace sweeps;

// kill -9 where there are signals; nothing of the process runs after it elsewhere either.
[[noreturn]] void Die() {
  std::raise(9);
  std::_Exit(9);
}

std::wstring AcknowledgedPath() { return Beside(L".told"); }

// Synchronises generation after generation, noting each that was told to be stored, until it dies:
// at a change of a file, or after some microseconds when `changes` is 0.
int SynchroniseUntilKilled(const Arguments& arguments) {
  long number = std::atol(arguments[0].c_str());
  long changes = std::atol(arguments[1].c_str());
  const long microseconds = std::atol(arguments[2].c_str());
  const Disk disk;
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 5000);
  if (changes) {
    Disk::before_change = [&] {
      if (--changes == 0) Die();
    };
  } else {
    std::thread([=] {
      std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
      Die();
    }).detach();
  }
  for (;; ++number) {
    if (!StoreGeneration(db, GenerationDocument(number).c_str())) return 1;
    WriteFileBytes(AcknowledgedPath(), std::to_string(number));
  }
}

const ChildFunction kChild("synchronise", &SynchroniseUntilKilled);

void Run(const Options& options, Figures& figures) {
  Store store;
  Random random(options.seed);
  long last = 0;
  const auto fill = [&] {
    store.Reset();
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 5000);
    StoreGeneration(db, GenerationDocument(0).c_str());
    last = 0;
  };
  store.Keep(false);
  fill();
  for (; figures.points < options.size; ++figures.points) {
    // Early in the synchronisation, or in one that empties the log.
    const long changes = Below(random, 2) ? 1 + Below(random, 400) : 0;
    const long microseconds = 100 + Below(random, 20000);
    const std::string point = "after generation " + std::to_string(last) + ", at change " +
                              std::to_string(changes) + ", " + std::to_string(microseconds) + " us";
    WriteFileBytes(AcknowledgedPath(), std::to_string(last));
    ChildProcess child(
        store.folder(), "synchronise",
        {std::to_string(last + 1), std::to_string(changes), std::to_string(microseconds)});
    if (child.Succeeded()) figures.Add(kCrash, point + ": not killed");
    const std::string told = ReadFileBytes(AcknowledgedPath());
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 5000);
    if (!db.CheckIntegrity()) figures.Add(kDamage, point);
    const long stored = StoredGeneration(OpenRaw().get());
    // The kill may come between a note's two steps, and between the commit and its note.
    const long acknowledged = told.empty() ? last : std::atol(told.c_str());
    if (stored < acknowledged || (!told.empty() && stored > acknowledged + 1)) {
      figures.Add(kMixed, point + ": told " + told + ", stored " + std::to_string(stored));
    }
    if (db.AddAlertSent(1) != SQLITE_DONE) figures.Add(kLockKept, point);
    db.CloseDB();
    last = stored;
    if (stored < 0) fill();
  }
}

const Sweep kSweep("kills", 1000, 20, &Run);

}  // namespace
