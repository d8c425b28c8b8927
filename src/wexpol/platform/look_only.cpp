#include "wexpol/platform/look_only.h"

#include <atomic>

namespace wexpol {
namespace {

std::atomic<bool> g_only_looks = false;

}  // namespace

LookOnly::LookOnly(bool only) : former_(g_only_looks.exchange(only)) {}

LookOnly::~LookOnly() { g_only_looks = former_; }

bool OnlyLooks() { return g_only_looks; }

}  // namespace wexpol
