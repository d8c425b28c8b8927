#include "bench/bench_support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "tools/provision/provision.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/testing.h"

namespace bench {
namespace {

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

double Now(Clock clock) {
  timespec now;
  clock_gettime(clock == Clock::kWall ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Of one call. Without a preparation the clock is read once around all, so that it costs nothing.
double Seconds(const Contender& contender, int repeats, Clock clock) {
  double total = 0;
  const int laps = contender.prepare ? repeats : 1;
  for (int lap = 0; lap < laps; ++lap) {
    if (contender.prepare) contender.prepare();
    const double start = Now(clock);
    for (int i = 0; i < repeats / laps; ++i) contender.run();
    total += Now(clock) - start;
  }
  return total / repeats;
}

}  // namespace

Database::Database() {
  const auto pattern = std::filesystem::temp_directory_path() / "wexpol-bench-XXXXXX";
  std::string folder = pattern.string();
  if (!mkdtemp(folder.data())) Fail("no temporary folder");
  folder_ = std::filesystem::path(folder).wstring();
  wexpol::RedirectMachine(folder_);
  path_ = CFilePaths::GetLocationDB();
  std::string error;
  if (!wexpol::CreateDatabase(path_, error)) Fail("no database: " + error);
  session_ = std::make_unique<CPolicyDB>("60718", path_.c_str(), SQLITE_OPEN_READWRITE, 5000);
  handle_ = wexpol::OpenKeyed(path_, SQLITE_OPEN_READWRITE);
  if (!session_->IsValidDB() || !handle_) Fail("the database cannot be opened");
}

Database::~Database() {
  session_.reset();
  sqlite3_close(handle_);
  wexpol::DeleteRedirectedRegistry();
  wexpol::RedirectMachine(L"");
  std::filesystem::remove_all(folder_);
}

void Database::Sql(const std::string& statements) {
  if (sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail(statements.substr(0, 80) + ": " + sqlite3_errmsg(handle_));
  }
}

void Compare(benchmark::State& state, const std::vector<Contender>& contenders, int repeats,
             int rounds, Clock clock) {
  std::vector<std::vector<double>> times(contenders.size());
  std::vector<std::vector<double>> ratios(contenders.size());
  for (auto _ : state) {
    for (const Contender& contender : contenders) Seconds(contender, repeats, clock);  // Warm up.
    for (int round = 0; round < rounds; ++round) {
      for (std::size_t i = 0; i < contenders.size(); ++i) {
        times[i].push_back(Seconds(contenders[i], repeats, clock));
        ratios[i].push_back(times[i].back() / times[0].back());
      }
    }
  }
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    state.counters[contenders[i].name + "_us"] = Median(times[i]) * 1e6;
    if (i > 0) state.counters[contenders[i].name + "/" + contenders[0].name] = Median(ratios[i]);
  }
}

}  // namespace bench
