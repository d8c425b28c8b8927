#include "wexpol/platform/clock.h"

#include <windows.h>

#include "wexpol/platform/clock_source.h"
#include "wexpol/platform/system_types.h"

namespace wexpol {
namespace {

class MachineClock : public Clock {
 public:
  std::int64_t UtcFileTime() const override {
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
  }

  std::int64_t UtcToLocal(std::int64_t utc_file_time) const override {
    const SYSTEMTIME utc = FromFileTime(utc_file_time);
    SYSTEMTIME local;
    std::int64_t result;
    const bool converted =
        ::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) != 0 && ToFileTime(local, &result);
    return converted ? result : utc_file_time;
  }

  std::uint32_t TickCount() const override { return ::GetTickCount(); }
};

}  // namespace

const Clock& SystemClock() {
  static const MachineClock clock;
  return clock;
}

}  // namespace wexpol
