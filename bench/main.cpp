// The benchmarks. docs/performance.md says what each shows; scripts/figures prints them all.

#include <benchmark/benchmark.h>
#include <malloc.h>

int main(int argc, char** argv) {
  // Freed memory stays with the process: else its return to the system, and the page faults of
  // having it back, would be measured with whatever runs next.
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
