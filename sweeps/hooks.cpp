#include "sweeps/faults.h"

namespace sweeps {
namespace {

bool armed = false;

}  // namespace

bool Fails(FaultKind kind) {
  if (!armed) return false;
  const long place = ++places[kind];
  if (kind != plan.kind || plan.nth == 0) return false;
  return plan.from_then_on ? place >= plan.nth : place == plan.nth;
}

Armed::Armed() { armed = true; }
Armed::~Armed() { armed = false; }

}  // namespace sweeps
