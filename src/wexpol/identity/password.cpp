#include "wexpol/identity/password.h"

#include <openssl/crypto.h>

#include <string>
#include <tuple>

#include "wexpol/platform/hex.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/wipe.h"

namespace wexpol {
namespace {

constexpr std::size_t kDigits = 2 * std::tuple_size_v<Md5Digest>;
constexpr std::size_t kShortenedDigits = kDigits / 2;

bool IsDigestText(std::wstring_view digits, const Md5Digest& digest) {
  const std::size_t step = kDigits / digits.size();  // 2 where only the first digits are kept.
  int difference = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const std::size_t at = i * step;
    const int digit = digest[at / 2] >> (at % 2 == 0 ? 4 : 0) & 15;
    difference |= HexDigit(digits[i]) ^ digit;
  }
  return difference == 0;
}

}  // namespace

bool IsSameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

bool FitsPassword(std::wstring_view stored, std::wstring_view password, Md5Function md5) {
  if (stored.empty()) return false;
  if (IsSameText(stored, password)) return true;
  if (stored.size() != kDigits && stored.size() != kShortenedDigits) return false;
  std::string utf8 = WideToUtf8(password);
  const WipeAtEnd wipe_utf8(utf8);
  Md5Digest digest;
  const WipeAtEnd wipe_digest(digest);
  return md5(utf8.data(), utf8.size(), &digest) && IsDigestText(stored, digest);
}

}  // namespace wexpol
