// Faults that are put under the library while it answers one question.

#ifndef WEXPOL_SWEEPS_FAULTS_H_
#define WEXPOL_SWEEPS_FAULTS_H_

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "sweeps/store.h"

namespace sweeps {

enum FaultKind {
  kNew,     // operator new
  kMalloc,  // malloc of what is linked with the library, and of libcrypto
  kEngine,  // the engine's allocator
  kFull,    // of a file: a write finds the disk full
  kWrite,
  kShortWrite,
  kTruncate,
  kSync,
  kSize,
  kRead,
  kLock,
  kSharedMemory,
  kFaultKinds,
};

// The fault that is planned, for one thread at a time; none while `nth` is 0.
struct Plan {
  FaultKind kind = kNew;
  long nth = 0;
  bool from_then_on = false;
};
inline Plan plan;
// How many places of each kind were passed while armed.
inline std::array<long, kFaultKinds> places;

// Asked at each place where a fault can be: whether this one fails.
bool Fails(FaultKind kind);

// Faults arise only while one of these lives.
class Armed {
 public:
  Armed();
  ~Armed();
};

// The answer of a question that is put under the faults; the rest of an operation is spared.
template <typename Question>
auto UnderFaults(Question&& question) {
  const Armed armed;
  return question();
}

// What may be in the file after an operation.
enum class Leaves {
  kWhole,     // After success the new rows; after a failure the old ones, or all of the new.
  kLearns,    // Old or new rows, whatever the answer.
  kParts,     // After a failure also some of the new rows, or of the old where all are replaced.
  kReplaces,  // The same; where the clear failed, which is ignored, the old rows beside the new.
  kNothing,   // Nothing is looked for but that the file is sound.
};

struct Operation {
  std::string name;
  Leaves leaves;
  // The answer as a text; "0" and "-1" are those of a failure.
  std::function<std::string(CPolicyDB&)> run;
};

const std::vector<Operation>& Operations();

// Puts one fault at a time under every operation: at each place of every kind, once and from there
// on; `options.size` of these points, spread evenly.
void SweepFaults(std::span<const FaultKind> kinds, const Options& options, Figures& figures);

}  // namespace sweeps

#endif  // WEXPOL_SWEEPS_FAULTS_H_
