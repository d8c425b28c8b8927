// Where the library's one clock takes the time from: the machine, or what a test puts there.

#ifndef WEXPOL_PLATFORM_CLOCK_SOURCE_H_
#define WEXPOL_PLATFORM_CLOCK_SOURCE_H_

#include <cstdint>

namespace wexpol {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual std::int64_t UtcFileTime() const = 0;
  virtual std::int64_t UtcToLocal(std::int64_t utc_file_time) const = 0;
  // Milliseconds since the system started; wraps after 49.7 days.
  virtual std::uint32_t TickCount() const = 0;
};

// The clock of the machine.
const Clock& SystemClock();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_CLOCK_SOURCE_H_
