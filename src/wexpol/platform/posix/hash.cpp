#include "wexpol/platform/hash.h"

#include <openssl/evp.h>

#include "wexpol/platform/crypto.h"

namespace wexpol {
namespace {

template <std::size_t kSize>
bool Hash(const EVP_MD* algorithm, const void* data, std::size_t size,
          std::array<std::uint8_t, kSize>* digest) {
  StartCrypto();
  return ::EVP_Digest(data, size, digest->data(), nullptr, algorithm, nullptr) == 1;
}

}  // namespace

bool Md5(const void* data, std::size_t size, Md5Digest* digest) {
  return Hash(::EVP_md5(), data, size, digest);
}

bool Sha1(const void* data, std::size_t size, Sha1Digest* digest) {
  return Hash(::EVP_sha1(), data, size, digest);
}

bool CryptdllMd5(const void* data, std::size_t size, Md5Digest* digest) {
  return Md5(data, size, digest);
}

}  // namespace wexpol
