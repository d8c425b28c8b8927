// For tools that ask a machine's questions and must leave no trace on it; not for hosts, and not
// exported.

#ifndef WEXPOL_PLATFORM_LOOK_ONLY_H_
#define WEXPOL_PLATFORM_LOOK_ONLY_H_

namespace wexpol {

// While one lives with `only`, this process but looks at the machine: the registry opens for
// reading whatever access is asked for, so writes fail and no key is made; the log takes no line;
// a shared block that no process has made is not there. Databases and other files are not covered.
// To be made by one thread, before others are in the library.
class LookOnly {
 public:
  explicit LookOnly(bool only);
  ~LookOnly();
  LookOnly(const LookOnly&) = delete;
  LookOnly& operator=(const LookOnly&) = delete;

 private:
  bool former_;
};

bool OnlyLooks();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_LOOK_ONLY_H_
