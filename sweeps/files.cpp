// File operations that fail below the cipher.

#include "sweeps/disk.h"
#include "sweeps/faults.h"

namespace {

using namespace sweeps;

void Run(const Options& options, Figures& figures) {
  const Disk faulty;
  constexpr FaultKind kKinds[] = {kFull, kWrite, kShortWrite, kTruncate,    kSync,
                                  kSize, kRead,  kLock,       kSharedMemory};
  SweepFaults(kKinds, options, figures);
}

const Sweep kSweep("files", 5000, 300, &Run);

}  // namespace
