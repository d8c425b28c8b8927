// Files in one archive of the ZIP format, put together in memory.

#ifndef WEXPOL_WEXPOLCTL_ARCHIVE_H_
#define WEXPOL_WEXPOLCTL_ARCHIVE_H_

#include <memory>
#include <string>

namespace wexpolctl {

class Archive {
 public:
  Archive();
  // False when there is no memory for it.
  [[nodiscard]] bool Add(const std::string& name, const std::string& text);
  // The whole archive, to which nothing can be added any more; empty when that failed.
  std::string Finish();

 private:
  struct State;
  struct Closer {
    void operator()(State* state) const;
  };

  std::unique_ptr<State, Closer> state_;
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_ARCHIVE_H_
