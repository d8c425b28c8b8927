// Processes that use the file at once, and that share the log.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>

#include "sweeps/store.h"
#include "tests/support/child_process.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/testing.h"

namespace {

using namespace sweeps;

constexpr int kProcesses = 8;

std::wstring CountPath(int process) {
  return Beside((L".count" + std::to_wstring(process)).c_str());
}

// What a process found bad is its exit code less 2; it notes how much it did.
int Ended(const std::string& process, long count, int bad = -2) {
  WriteFileBytes(CountPath(std::atoi(process.c_str())), std::to_string(count));
  return bad + 2;
}

// Runs the child function in all processes, with its number and the arguments; `meanwhile` here.
void RunProcesses(
    const Store& store, const std::string& function, const Options& options, Figures& figures,
    const std::function<void()>& meanwhile = [] {}) {
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(std::make_unique<ChildProcess>(
        store.folder(), function,
        Arguments{std::to_string(i), std::to_string(options.seed), std::to_string(options.size)}));
  }
  meanwhile();
  for (int i = 0; i < kProcesses; ++i) {
    if (!children[static_cast<std::size_t>(i)]->Succeeded()) {
      figures.Add(kCrash, "process " + std::to_string(i) + ", see above");
    }
    figures.points += std::atol(ReadFileBytes(CountPath(i)).c_str());
  }
}

// Two of the processes synchronise; all of them decide, learn, note alerts and read.
int UseTheFile(const Arguments& arguments) {
  const long process = std::atol(arguments[0].c_str());
  Random random(static_cast<std::uint32_t>(std::atol(arguments[1].c_str()) * 100 + process));
  const auto end =
      std::chrono::steady_clock::now() + std::chrono::seconds(std::atol(arguments[2].c_str()));
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 10000);
  const Handle raw = OpenRaw();
  sqlite3_busy_timeout(raw.get(), 10000);
  long count = 0;
  const auto fails = [&](const char* what) {
    std::fprintf(stderr, "process %ld: %s: %s\n", process, what, db.GetError().c_str());
    return Ended(arguments[0], count, kLockKept);
  };
  for (; std::chrono::steady_clock::now() < end; ++count) {
    switch (Below(random, process < 2 ? 5 : 4)) {
      case 0: {
        const unsigned char digest[16] = {static_cast<unsigned char>(random()), 7};
        CAppControlInfo info;
        info.login_id = 1;
        if (!db.IsAppControlled(info, "patience.exe", digest, 16)) return fails("decision");
        break;
      }
      case 1: {
        std::vector<long> to_send;
        if (!db.AddAlertLogBuffer(to_send, 20, "stopped")) return fails("occurrence");
        break;
      }
      case 2: {
        std::list<CDevice*> devices;
        const bool all = db.GetDevices(devices, nullptr, 0);
        for (CDevice* each : devices) delete each;
        if (!all) return fails("list");
        break;
      }
      case 3:
        if (StoredGeneration(raw.get()) < 0) return fails("a mixed synchronisation");
        break;
      default:
        if (!StoreGeneration(db, GenerationDocument(Below(random, 1000)).c_str())) {
          return fails("synchronisation");
        }
    }
  }
  return Ended(arguments[0], count);
}

const ChildFunction kUser("use", &UseTheFile);

void RunUsers(const Options& options, Figures& figures) {
  const Store store;
  StoreSamples();
  {
    CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
    StoreGeneration(db, GenerationDocument(0).c_str());
  }
  RunProcesses(store, "use", options, figures);
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 1000);
  if (!db.CheckIntegrity()) figures.Add(kDamage, "after all processes");
}

std::wstring StopPath() { return Beside(L".stop"); }

int SynchroniseOn(const Arguments& arguments) {
  Random random(static_cast<std::uint32_t>(std::atol(arguments[0].c_str())));
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 10000);
  while (!wexpol::FileExists(StopPath())) {
    if (!StoreGeneration(db, GenerationDocument(Below(random, 1000)).c_str())) return 1;
  }
  return 0;
}

const ChildFunction kSynchroniser("synchronise on", &SynchroniseOn);

// How long decisions take that learn a digest each, while three processes synchronise.
void RunLearning(const Options& options, Figures& figures) {
  using namespace std::chrono_literals;
  using Clock = std::chrono::steady_clock;
  const Store store;
  StoreSamples();
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (const char* seed : {"1", "2", "3"}) {
    children.push_back(
        std::make_unique<ChildProcess>(store.folder(), "synchronise on", Arguments{seed}));
  }
  CPolicyDB db(kAccessCode, DatabasePath().c_str(), kReadWrite, 2000);
  std::vector<std::chrono::duration<double, std::milli>> took;
  Random random(options.seed);
  for (const auto end = Clock::now() + std::chrono::seconds(options.size); Clock::now() < end;) {
    unsigned char digest[16];
    for (unsigned char& byte : digest) byte = static_cast<unsigned char>(random());
    CAppControlInfo info;
    info.login_id = 1;
    const auto start = Clock::now();
    const bool decided = db.IsAppControlled(info, "patience.exe", digest, sizeof digest);
    took.push_back(Clock::now() - start);
    if (!decided) figures.Add(kLockKept, "a decision fails");
    std::this_thread::sleep_for(1ms);
  }
  WriteFileBytes(StopPath(), "");
  for (auto& child : children) {
    if (!child->Succeeded()) figures.Add(kCrash, "a process that synchronises");
  }
  const Handle raw = OpenRaw();
  Execute(raw.get(), "DELETE FROM app_checksums");
  if (sqlite3_changes(raw.get()) < 20) figures.Add(kFalseSuccess, "hardly anything is learnt");
  std::ranges::sort(took);
  figures.points = static_cast<long>(took.size());
  const auto p99 = took[took.size() * 99 / 100];
  std::printf("learning: 99 of 100 within %.2f ms, the longest %.2f ms\n", p99.count(),
              took.back().count());
  if (p99 >= 1ms || took.back() >= 50ms) figures.Add(kLockKept, "a decision waits");
}

// Lines of different lengths; so many that the log is put aside three times at least.
constexpr std::uint64_t kThreshold = 60000;

std::string LogText(int process, long line) {
  return std::to_string(process) + " " + std::to_string(line) + " " +
         std::string(static_cast<std::size_t>(line * 7 % 90), static_cast<char>('a' + process)) +
         ".";
}

int WriteTheLog(const Arguments& arguments) {
  wexpol::ResetLogForTesting(kThreshold);
  const int process = std::atoi(arguments[0].c_str());
  const long lines = std::atol(arguments[2].c_str()) / kProcesses;
  for (long line = 0; line < lines; ++line) {
    if (!wexpol::LogMessage("%s", LogText(process, line).c_str())) {
      return Ended(arguments[0], line, kLockKept);
    }
  }
  return Ended(arguments[0], lines);
}

const ChildFunction kLogger("log", &WriteTheLog);

// Until all have written: while somebody else holds the log's mutex, nobody writes.
void WatchTheLog(Figures& figures) {
  using namespace std::chrono_literals;
  wexpol::NamedMutex mutex(L"Global\\Veyra_Log");
  const std::wstring path = CFilePaths::GetLocationLogFile();
  const auto end = std::chrono::steady_clock::now() + 120s;
  for (int process = 0; process < kProcesses && std::chrono::steady_clock::now() < end;) {
    if (mutex.Wait(2000) != wexpol::NamedMutex::WaitResult::kObtained) {
      return figures.Add(kLockKept, "log");
    }
    const auto before = wexpol::FileSize(path);
    std::this_thread::sleep_for(1ms);
    if (wexpol::FileSize(path) != before) figures.Add(kMixed, "log: written without the mutex");
    mutex.Release();
    std::this_thread::sleep_for(2ms);
    while (process < kProcesses && wexpol::FileExists(CountPath(process))) ++process;
  }
}

// In both generations of the log, each line is whole and each process's lines follow one another up
// to its last.
void RunLog(const Options& options, Figures& figures) {
  const Store store;
  RunProcesses(store, "log", options, figures, [&] { WatchTheLog(figures); });
  const std::wstring path = CFilePaths::GetLocationLogFile();
  const std::string current = ReadFileBytes(path);
  const std::string old = ReadFileBytes(path + L".old.log");
  long written = 0;
  std::map<int, long> next;
  std::istringstream lines(old + current);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();  // Of a text file on Windows.
    const std::size_t at = line.find(" WexPol > ");
    int process = -1;
    long number = -1;
    if (line.starts_with("ClientVersion = ")) continue;
    if (at == line.npos || std::sscanf(line.c_str() + at + 10, "%d %ld", &process, &number) != 2 ||
        line.substr(at + 10) != LogText(process, number)) {
      figures.Add(kMixed, "log: " + line);
    } else if (const auto found = next.find(process);
               found != next.end() && found->second != number) {
      figures.Add(kMixed, "log: out of turn: " + line);
    }
    next[process] = number + 1;
  }
  for (const auto& [process, end] : next) {
    if (end != options.size / kProcesses) figures.Add(kMixed, "log: a last line is missing");
  }
  for (int i = 0; i < kProcesses; ++i) {
    for (long line = 0; line < options.size / kProcesses; ++line) {
      written += static_cast<long>(LogText(i, line).size()) + 50;
    }
  }
  if (old.size() <= kThreshold || written < static_cast<long>(3 * kThreshold)) {
    figures.Add(kMixed, "log: not put aside three times");
  }
}

const Sweep kUsers("processes", 60, 3, &RunUsers);
const Sweep kLearning("learning", 60, 3, &RunLearning);
const Sweep kLog("log", 16000, 2400, &RunLog);

}  // namespace
