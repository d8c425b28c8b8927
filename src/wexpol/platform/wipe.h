// Secrets leave no copy in memory.

#ifndef WEXPOL_PLATFORM_WIPE_H_
#define WEXPOL_PLATFORM_WIPE_H_

#include <openssl/crypto.h>

namespace wexpol {

// Overwrites the elements of a string or an array on every way out of the scope, exceptions
// included: std::string utf8 = ...; const WipeAtEnd wipe(utf8);
template <typename Elements>
class WipeAtEnd {
 public:
  explicit WipeAtEnd(Elements& elements) : elements_(elements) {}
  ~WipeAtEnd() { OPENSSL_cleanse(elements_.data(), elements_.size() * sizeof elements_[0]); }
  WipeAtEnd(const WipeAtEnd&) = delete;
  WipeAtEnd& operator=(const WipeAtEnd&) = delete;

 private:
  Elements& elements_;
};

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIPE_H_
