// The bar that a long synchronisation draws on a terminal.

#ifndef WEXPOL_WEXPOLCTL_PROGRESS_H_
#define WEXPOL_WEXPOLCTL_PROGRESS_H_

#include <cstdint>
#include <ostream>
#include <string>

namespace wexpolctl {

// One line that is drawn over and over and wiped at the end.
class Progress {
 public:
  // Draws nothing without a terminal. `total` is the sum of the sizes to come.
  Progress(std::ostream* terminal, std::uint64_t total) : terminal_(terminal), total_(total) {}
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Begin(const std::string& name);
  // At most some times a second, so it may be called for every record.
  void Count(std::int64_t records);
  void End(std::uint64_t size) { done_ += size; }

 private:
  void Draw(std::int64_t records);

  std::ostream* terminal_;
  std::uint64_t total_;
  std::uint64_t done_ = 0;
  std::uint32_t drawn_at_ = 0;
  std::string name_;
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_PROGRESS_H_
