// The units of the rules' thresholds and durations.

#ifndef WEXPOL_ALERTS_UNITS_H_
#define WEXPOL_ALERTS_UNITS_H_

#include <cstdint>

namespace wexpol {

enum ThresholdUnit : std::int16_t {
  kOccurrences = 1,
  kKilobytes = 2,
  kMegabytes = 3,
  kGigabytes = 4,
  kPercent = 5,
};

// The product wraps at 32 bits before it is widened.
constexpr std::int64_t MinutesToSeconds(std::int32_t minutes) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(minutes) * 60u);
}

}  // namespace wexpol

#endif  // WEXPOL_ALERTS_UNITS_H_
