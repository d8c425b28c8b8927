#include "wexpol/platform/clock.h"

#include <ctime>

#include "wexpol/platform/clock_source.h"

namespace wexpol {
namespace {

class MachineClock : public Clock {
 public:
  std::int64_t UtcFileTime() const override {
    std::timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return UnixToFileTime(now.tv_sec) + now.tv_nsec / 100;
  }

  std::int64_t UtcToLocal(std::int64_t utc_file_time) const override {
    const std::time_t seconds = FileTimeToUnix(utc_file_time);
    std::tm local;
    if (!::localtime_r(&seconds, &local)) return utc_file_time;
    return utc_file_time + local.tm_gmtoff * kFileTimePerSecond;
  }

  std::uint32_t TickCount() const override {
    std::timespec up;
    ::clock_gettime(CLOCK_BOOTTIME, &up);
    return static_cast<std::uint32_t>(up.tv_sec * 1000 + up.tv_nsec / 1'000'000);
  }
};

}  // namespace

const Clock& SystemClock() {
  static const MachineClock clock;
  return clock;
}

}  // namespace wexpol
