#include "wexpol/platform/hash.h"

#include <windows.h>
#include <wincrypt.h>

#include <cstring>
#include <limits>

#include "wexpol/platform/scoped_handle.h"
#include "wexpol/platform/win32/system_library.h"

namespace wexpol {
namespace {

// CryptoAPI handles are numbers.
ScopedHandle OwnProvider(HCRYPTPROV provider) {
  return {reinterpret_cast<void*>(provider),
          {[](void* handle) { ::CryptReleaseContext(reinterpret_cast<HCRYPTPROV>(handle), 0); }}};
}

ScopedHandle OwnHash(HCRYPTHASH hash) {
  return {reinterpret_cast<void*>(hash),
          {[](void* handle) { ::CryptDestroyHash(reinterpret_cast<HCRYPTHASH>(handle)); }}};
}

template <std::size_t kSize>
bool Hash(ALG_ID algorithm, const void* data, std::size_t size,
          std::array<std::uint8_t, kSize>* digest) {
  if (size > std::numeric_limits<DWORD>::max()) return false;
  HCRYPTPROV provider;
  if (!::CryptAcquireContextW(&provider, nullptr, L"Microsoft Base Cryptographic Provider v1.0",
                              PROV_RSA_FULL, CRYPT_VERIFYCONTEXT)) {
    return false;
  }
  const ScopedHandle provider_owner = OwnProvider(provider);
  HCRYPTHASH hash;
  if (!::CryptCreateHash(provider, algorithm, 0, 0, &hash)) return false;
  const ScopedHandle hash_owner = OwnHash(hash);
  std::array<std::uint8_t, kSize> result;
  DWORD result_size = kSize;
  if (!::CryptHashData(hash, static_cast<const BYTE*>(data), static_cast<DWORD>(size), 0) ||
      !::CryptGetHashParam(hash, HP_HASHVAL, result.data(), &result_size, 0) ||
      result_size != kSize) {
    return false;
  }
  *digest = result;
  return true;
}

// The state that Cryptdll's functions share: counts, words, a block, and the digest at the end.
struct Md5Context {
  ULONG bits[2];
  ULONG words[4];
  UCHAR block[64];
  UCHAR digest[16];
};

}  // namespace

bool Md5(const void* data, std::size_t size, Md5Digest* digest) {
  return Hash(CALG_MD5, data, size, digest);
}

bool Sha1(const void* data, std::size_t size, Sha1Digest* digest) {
  return Hash(CALG_SHA1, data, size, digest);
}

bool CryptdllMd5(const void* data, std::size_t size, Md5Digest* digest) {
  const SystemLibrary library(L"Cryptdll.dll");
  const auto init = library.Find<void(WINAPI*)(Md5Context*)>("MD5Init");
  const auto update = library.Find<void(WINAPI*)(Md5Context*, const void*, UINT)>("MD5Update");
  const auto final = library.Find<void(WINAPI*)(Md5Context*)>("MD5Final");
  if (!init || !update || !final || size > std::numeric_limits<UINT>::max()) return false;
  Md5Context context;
  init(&context);
  update(&context, data, static_cast<UINT>(size));
  final(&context);
  std::memcpy(digest->data(), context.digest, digest->size());
  ::SecureZeroMemory(&context, sizeof context);
  return true;
}

}  // namespace wexpol
