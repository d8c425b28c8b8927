// The time, by one clock for the whole library, and conversions of its units.
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

// Now: seconds since 1970 UTC, local calendar time to the millisecond, and milliseconds since the
// system started, which wrap after 49.7 days.
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
