// The time: one clock for the whole library, replaceable for tests, and conversions of its units.
//
// A file time counts units of 100 nanoseconds since the year 1601, as the system does.

#ifndef WEXPOL_PLATFORM_CLOCK_H_
#define WEXPOL_PLATFORM_CLOCK_H_

#include <cstdint>

#include "wexpol/platform/export.h"

// Complete in "wexpol/platform/system_types.h".
struct _SYSTEMTIME;  // NOLINT(bugprone-reserved-identifier)
using SYSTEMTIME = _SYSTEMTIME;

namespace wexpol {

class WEXPOL_API Clock {
 public:
  virtual ~Clock() = default;
  virtual std::int64_t UtcFileTime() const = 0;
  virtual std::int64_t UtcToLocal(std::int64_t utc_file_time) const = 0;
  // Milliseconds since the system started; wraps after 49.7 days.
  virtual std::uint32_t TickCount() const = 0;
};

// The clock of the machine, and the one that is used instead; null means the machine's again.
const Clock& SystemClock();
WEXPOL_API void SetClockForTesting(const Clock* clock);

// Now: seconds since 1970 UTC, local calendar time to the millisecond, ticks.
WEXPOL_API std::int64_t NowUtc();
SYSTEMTIME NowLocal();
std::uint32_t TickCount();

// The local calendar time of an instant in seconds since 1970 UTC; all zeros when out of range.
SYSTEMTIME UtcToLocal(std::int64_t utc_seconds);

// False, and nothing written, for a date that does not exist or a year before 1601. The day of the
// week is not looked at.
bool ToFileTime(const SYSTEMTIME& time, std::int64_t* file_time);
// All zeros for a file time that is negative or past the year 30827.
SYSTEMTIME FromFileTime(std::int64_t file_time);

constexpr std::int64_t kFileTimePerSecond = 10'000'000;
constexpr std::int64_t kUnixEpochInSeconds = 11'644'473'600;  // from 1601 to 1970

constexpr std::int64_t UnixToFileTime(std::int64_t seconds) {
  return (seconds + kUnixEpochInSeconds) * kFileTimePerSecond;
}
// Rounds down. File times before 1970 give negative seconds.
constexpr std::int64_t FileTimeToUnix(std::int64_t file_time) {
  const std::int64_t seconds = file_time / kFileTimePerSecond;
  return seconds - (file_time % kFileTimePerSecond < 0) - kUnixEpochInSeconds;
}

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_CLOCK_H_
