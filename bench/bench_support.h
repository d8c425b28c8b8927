// What the benchmarks share: a provisioned file, and pairs measured in turn within one run.

#ifndef WEXPOL_BENCH_BENCH_SUPPORT_H_
#define WEXPOL_BENCH_BENCH_SUPPORT_H_

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "wexpol.h"

namespace bench {

// A provisioned encrypted database in a folder of its own, which goes with it; registry and
// locations are redirected there. One at a time.
class Database {
 public:
  Database();
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::wstring& path() const { return path_; }
  CPolicyDB& session() { return *session_; }
  // A raw handle on the same file, without a statement cache: the hand-written side of a pair.
  sqlite3* handle() { return handle_; }
  void Sql(const std::string& statements);

 private:
  std::wstring folder_;
  std::wstring path_;
  std::unique_ptr<CPolicyDB> session_;
  sqlite3* handle_ = nullptr;
};

// One of the ways that are compared.
struct Contender {
  std::string name;
  std::function<void()> run;      // What is measured.
  std::function<void()> prepare;  // Run before it, not measured; may be empty.
};

// Time of this process on the processor, which no other process stretches; or by the wall, where
// what is waited for counts.
enum class Clock { kProcessor, kWall };

// Runs the contenders in turn, `rounds` times, `repeats` calls each time, and reports for each the
// median time of a call and, against the first, the median of the ratios round by round: noise that
// lasts longer than a round hits both sides of a ratio.
void Compare(benchmark::State& state, const std::vector<Contender>& contenders, int repeats,
             int rounds = 31, Clock clock = Clock::kProcessor);

}  // namespace bench

#endif  // WEXPOL_BENCH_BENCH_SUPPORT_H_
