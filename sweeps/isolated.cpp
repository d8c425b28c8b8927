#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <new>

#include "sweeps/sweep.h"

// The sanitizer's search for leaks; without the sanitizer there is none.
extern "C" __attribute__((weak)) int __lsan_do_recoverable_leak_check();

namespace sweeps {
namespace {

constexpr long kRound = 100;
constexpr unsigned kSecondsPerPoint = 60;

// Written by the child, read by the parent.
struct Progress {
  Figures figures;
  long next = 0;
};

[[noreturn]] void RunRound(Progress& progress, long end,
                           const std::function<std::string(long)>& describe,
                           const std::function<void(long, Figures&)>& run) {
  const long first = progress.next;
  for (; progress.next < end; ++progress.next) {
    alarm(kSecondsPerPoint);
    try {
      run(progress.next, progress.figures);
    } catch (...) {
      progress.figures.Add(kCrash, describe(progress.next) + ": an exception");
    }
    ++progress.figures.points;
  }
  alarm(0);
  if (__lsan_do_recoverable_leak_check && __lsan_do_recoverable_leak_check()) {
    progress.figures.Add(kLeak, "between " + describe(first) + " and " + describe(end - 1));
  }
  _exit(0);
}

}  // namespace

void RunIsolated(long count, Figures& figures, const std::function<std::string(long)>& describe,
                 const std::function<void(long, Figures&)>& run) {
  void* memory =
      mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;  // No points, which is no success.
  auto& progress = *new (memory) Progress;
  while (progress.next < count) {
    const long end = std::min(count, progress.next + kRound);
    const pid_t child = fork();
    if (child == 0) RunRound(progress, end, describe, run);
    int status = 1;
    if (child > 0) waitpid(child, &status, 0);
    if (status == 0) continue;
    progress.figures.Add(kCrash, describe(progress.next));
    ++progress.figures.points;
    ++progress.next;
  }
  figures = progress.figures;
  munmap(memory, sizeof(Progress));
}

}  // namespace sweeps
