// Files that something else has damaged: the database, its log and the log's index.

#include <algorithm>

#include "sweeps/store.h"

namespace {

using namespace sweeps;

constexpr std::size_t kPage = 4096;
constexpr long kLatest = 3;

std::string RandomBytes(std::size_t size, Random& random) {
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

using Damage = void (*)(std::string& bytes, Random& random);

std::size_t Place(const std::string& bytes, Random& random) {
  return static_cast<std::size_t>(Below(random, static_cast<long>(bytes.size())));
}

void FlipBit(std::string& bytes, std::size_t at, long bit) {
  bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
}

constexpr Damage kDamages[] = {
    [](std::string& bytes, Random& random) {
      FlipBit(bytes, Place(bytes, random), Below(random, 8));
    },
    [](std::string& bytes, Random& random) { FlipBit(bytes, Place(bytes, random) % 100, 5); },
    [](std::string& bytes, Random& random) { bytes.resize(Place(bytes, random)); },
    [](std::string& bytes, Random& random) { bytes.resize(Place(bytes, random) / kPage * kPage); },
    [](std::string& bytes, Random& random) { bytes += RandomBytes(1 + random() % 9000, random); },
    [](std::string& bytes, Random& random) {  // Sectors of zeros, or of something else.
      const std::size_t at = Place(bytes, random) / 512 * 512;
      const std::size_t size = std::min<std::size_t>(512 * (1 + random() % 8), bytes.size() - at);
      bytes.replace(at, size, random() % 2 ? std::string(size, 0) : RandomBytes(size, random));
    },
    [](std::string& bytes, Random& random) {  // A page in the place of another.
      const std::size_t pages = bytes.size() / kPage;
      if (pages < 2) return;
      const std::string page = bytes.substr(random() % pages * kPage, kPage);
      bytes.replace(random() % pages * kPage, kPage, page);
    },
    [](std::string& bytes, Random& random) {  // Bytes moved to another place.
      const std::size_t from = Place(bytes, random);
      const std::string moved = bytes.substr(from, 700);
      bytes.erase(from, moved.size()).insert(from / 2, moved);
    },
    [](std::string& bytes, Random&) { bytes.clear(); },
    [](std::string& bytes, Random&) { std::ranges::fill(bytes, '\0'); },
    [](std::string& bytes, Random&) { bytes = "SQLite format 3"; },
    [](std::string& bytes, Random& random) { bytes = RandomBytes(bytes.size(), random); },
};

// Of a process that was killed with synchronisations in the log, or of one that ended.
struct Files {
  std::string database;
  std::string log;
  std::string index;
};

Files FilesInUse() {
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
  for (long number = 1; number <= kLatest; ++number) {
    StoreGeneration(db, GenerationDocument(number).c_str());
  }
  return {ReadFileBytes(DatabasePath()), ReadFileBytes(Beside(L"-wal")),
          ReadFileBytes(Beside(L"-shm"))};
}

void Run(const Options& options, Figures& figures) {
  Store store;
  {
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
    StoreGeneration(db, GenerationDocument(0).c_str());
  }
  store.Keep(true);
  const Files in_use = FilesInUse();
  const Files at_rest = {ReadFileBytes(DatabasePath()), {}, {}};
  const auto describe = [&](long i) {
    return "damage " + std::to_string(i % static_cast<long>(std::size(kDamages))) + " of point " +
           std::to_string(i);
  };
  RunIsolated(options.size, figures, describe, [&](long i, Figures& each) {
    Random random(options.seed + static_cast<std::uint32_t>(i));
    store.Reset();
    Files files = i % 2 ? at_rest : in_use;
    std::string& victim = i % 4 == 0 ? files.log : i % 8 == 2 ? files.index : files.database;
    kDamages[static_cast<std::size_t>(i) % std::size(kDamages)](victim, random);
    WriteFileBytes(DatabasePath(), files.database);
    WriteFileBytes(Beside(L"-wal"), files.log);
    WriteFileBytes(Beside(L"-shm"), files.index);
    JudgeFile(describe(i), kLatest, each);
  });
}

const Sweep kSweep("damage", 2000, 96, &Run);

}  // namespace
