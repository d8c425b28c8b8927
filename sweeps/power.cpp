// Cuts of power, replayed from a record of what was written: since a file's last synchronisation,
// each write is there, is lost, or is there up to a sector, and all are in any order.

#include <algorithm>

#include "sweeps/disk.h"
#include "sweeps/store.h"

namespace {

using namespace sweeps;
using Changes = std::vector<Disk::Change>;

constexpr std::size_t kSector = 512;
constexpr long kGenerations = 12;

void Apply(const Disk::Change& change, std::size_t size, std::string& file) {
  const auto at = static_cast<std::size_t>(change.at);
  if (change.what == Disk::Change::kTruncated) {
    file.resize(at);
  } else if (change.what == Disk::Change::kWritten && size > 0) {
    if (file.size() < at + size) file.resize(at + size);
    file.replace(at, size, change.bytes, 0, size);
  }
}

// What a cut before change `cut` may leave of one file.
std::string Replay(const Changes& changes, std::size_t cut, bool log, std::string file,
                   Random& random) {
  std::vector<const Disk::Change*> loose;
  for (std::size_t i = 0; i < cut; ++i) {
    const Disk::Change& change = changes[i];
    if (change.log != log) continue;
    if (change.what != Disk::Change::kSynced) {
      loose.push_back(&change);
      continue;
    }
    for (const Disk::Change* each : loose) Apply(*each, each->bytes.size(), file);
    loose.clear();
  }
  const long lost = Below(random, 4) * 20;  // Of a hundred; none in some cuts.
  if (Below(random, 2)) std::ranges::shuffle(loose, random);
  for (const Disk::Change* each : loose) {
    if (Below(random, 100) < lost) continue;
    const std::size_t size = each->bytes.size();
    const bool torn = Below(random, 20) == 0 && size > kSector;
    const std::size_t sectors = size / kSector;
    Apply(
        *each,
        torn ? kSector * static_cast<std::size_t>(Below(random, static_cast<long>(sectors))) : size,
        file);
  }
  return file;
}

// The writes of some synchronisations with single writes between them.
Changes Record() {
  const Disk disk;
  Disk::recording = true;
  for (long number = 1; number <= kGenerations; ++number) {
    // A process that ends empties the log into the file.
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
    if (number % 3 == 0) db.AddAlertSent(1);
    StoreGeneration(db, GenerationDocument(number).c_str());
    if (number % 2 == 0) db.AddAlertSent(1);
  }
  Disk::recording = false;
  return std::move(Disk::changes);
}

void Run(const Options& options, Figures& figures) {
  Store store;
  {
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
    StoreGeneration(db, GenerationDocument(0).c_str());
  }
  store.Keep(true);
  const Changes changes = Record();
  const auto describe = [&](long i) { return "cut " + std::to_string(i); };
  RunIsolated(options.size, figures, describe, [&](long i, Figures& each) {
    Random random(options.seed + static_cast<std::uint32_t>(i));
    const auto cut = static_cast<std::size_t>(Below(random, static_cast<long>(changes.size()) + 1));
    store.Reset();
    WriteFileBytes(DatabasePath(), Replay(changes, cut, false, store.kept(), random));
    WriteFileBytes(Beside(L"-wal"), Replay(changes, cut, true, {}, random));
    JudgeFile(describe(i), kGenerations, each);
  });
}

const Sweep kSweep("power", 2000, 100, &Run);

}  // namespace
