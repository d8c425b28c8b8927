#include "tools/wexpolctl/progress.h"

#include <algorithm>

#include "wexpol/platform/clock.h"

namespace wexpolctl {
namespace {

constexpr std::size_t kLine = 78;
constexpr std::uint64_t kBar = 24;
constexpr std::uint32_t kIntervalMs = 100;

}  // namespace

Progress::~Progress() {
  if (terminal_ && drawn_at_) *terminal_ << '\r' << std::string(kLine, ' ') << '\r' << std::flush;
}

void Progress::Begin(const std::string& name) {
  name_ = name;
  if (terminal_) Draw(0);
}

void Progress::Count(std::int64_t records) {
  if (terminal_ && wexpol::TickCount() - drawn_at_ >= kIntervalMs) Draw(records);
}

void Progress::Draw(std::int64_t records) {
  drawn_at_ = std::max(1u, wexpol::TickCount());
  const std::uint64_t parts = total_ ? done_ * kBar / total_ : 0;
  std::string line = '[' + std::string(parts, '#') + std::string(kBar - parts, '.') + "] " +
                     std::to_string(total_ ? done_ * 100 / total_ : 0) + " %  " + name_;
  if (records) line += "  " + std::to_string(records) + " records";
  line.resize(kLine, ' ');
  *terminal_ << '\r' << line << std::flush;
}

}  // namespace wexpolctl
