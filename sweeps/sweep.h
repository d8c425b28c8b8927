// What the sweeps share: their figures, how they are told, points that may crash.

#ifndef WEXPOL_SWEEPS_SWEEP_H_
#define WEXPOL_SWEEPS_SWEEP_H_

#include <cstdint>
#include <functional>
#include <random>
#include <string>

namespace sweeps {

// In what a point can be bad.
enum Bad {
  kCrash,            // Ended by a signal, a sanitizer or an exception past the facade, or hung.
  kLeak,             // Counted once for all points of a round.
  kLockKept,         // Others could not write afterwards.
  kTransactionOpen,  // The next write was inside a transaction that nobody had begun.
  kFalseSuccess,     // An answer that is neither the right one nor that of a failure.
  kSilent,           // A document that was refused without an error object.
  kMixed,            // Contents that are neither the old nor the new ones, or lost what was told.
  kDamage,           // Wrong contents that no check finds, or damage that is not restored.
  kBadCount,
};

struct Figures {
  long points = 0;
  long bad[kBadCount] = {};
  long earlier = 0;  // Sound files with an authentic page of an earlier time: told, not bad.

  // Counts, and says on standard error what was bad about which point.
  void Add(Bad what, const std::string& point);
};

struct Options {
  std::uint32_t seed = 1;
  long size = 0;
};

// One sweep, declared at namespace scope. `full` and `brief` are the sizes of its two forms.
struct Sweep {
  Sweep(const char* name, long full, long brief, void (*run)(const Options&, Figures&));

  const char* name;
  long full;
  long brief;
  void (*run)(const Options&, Figures&);
};

using Random = std::mt19937;
inline long Below(Random& random, long limit) {
  return static_cast<long>(random() % static_cast<unsigned long>(limit));
}

// Runs the points 0 to `count` - 1 in processes of their own: one that crashes or takes more than
// a minute counts as bad, and the next one goes on. A leak is looked for after every round of
// points.
void RunIsolated(long count, Figures& figures, const std::function<std::string(long)>& describe,
                 const std::function<void(long, Figures&)>& run);

}  // namespace sweeps

#endif  // WEXPOL_SWEEPS_SWEEP_H_
