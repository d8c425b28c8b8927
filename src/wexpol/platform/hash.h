// Digests of bytes, computed by the system's own providers.

#ifndef WEXPOL_PLATFORM_HASH_H_
#define WEXPOL_PLATFORM_HASH_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace wexpol {

using Md5Digest = std::array<std::uint8_t, 16>;
using Sha1Digest = std::array<std::uint8_t, 20>;

// False, and `digest` untouched, when the provider cannot be used.
bool Md5(const void* data, std::size_t size, Md5Digest* digest);
bool Sha1(const void* data, std::size_t size, Sha1Digest* digest);

// MD5 by "Cryptdll.dll", which passwords are checked with; it is loaded for each call.
bool CryptdllMd5(const void* data, std::size_t size, Md5Digest* digest);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_HASH_H_
