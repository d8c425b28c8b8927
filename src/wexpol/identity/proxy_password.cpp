#include "wexpol/identity/proxy_password.h"

#include <openssl/bio.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "wexpol/platform/crypto.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/wipe.h"

namespace wexpol {
namespace {

constexpr std::size_t kKeySize = 24;
constexpr std::size_t kBlockSize = 8;
constexpr std::size_t kMaxPlainCharacters = 255;
// Whole blocks, the padding included.
constexpr std::size_t kMaxCipherSize =
    (kMaxPlainCharacters * kMaxUtf8PerWide / kBlockSize + 1) * kBlockSize;

// What must not stay in memory.
struct Secrets {
  Secrets() = default;
  ~Secrets() { OPENSSL_cleanse(this, sizeof *this); }
  Secrets(const Secrets&) = delete;
  Secrets& operator=(const Secrets&) = delete;

  unsigned char key[kKeySize] = {};
  unsigned char cipher[kMaxCipherSize];
  unsigned char plain[kMaxCipherSize + kBlockSize];
  wchar_t wide[kMaxCipherSize];
};

// The vector that the console encrypts with, put together here so that it lies nowhere in the file
// of the library as one text.
std::array<unsigned char, kBlockSize> InitialisationVector() {
  static volatile const std::uint32_t kParts[] = {0xC31A5F86, 0x2E97D04B};
  std::array<unsigned char, kBlockSize> vector;
  for (std::size_t i = 0; i < vector.size(); ++i) {
    vector[i] = static_cast<unsigned char>(kParts[i / 4] >> (i % 4 * 8));
  }
  return vector;
}

void MakeKey(std::wstring_view text, unsigned char (&key)[kKeySize]) {
  std::string utf8 = WideToUtf8(text);
  const WipeAtEnd wipe(utf8);
  std::copy_n(utf8.data(), std::min(utf8.size(), kKeySize), key);
}

// How many bytes the text stands for; 0 for a text that is no base64 or too long. The filter itself
// would drop an incomplete last group of digits, and takes white space at the end.
int DecodeBase64(std::string_view text, unsigned char (&bytes)[kMaxCipherSize]) {
  text = text.substr(0, text.find_last_not_of(" \t\r\n\v\f") + 1);
  if (text.size() % 4 != 0 || text.size() / 4 * 3 > kMaxCipherSize + 2) return 0;
  const std::unique_ptr<BIO, void (*)(BIO*)> chain(BIO_new(BIO_f_base64()), &BIO_free_all);
  BIO* source = BIO_new_mem_buf(text.data(), static_cast<int>(text.size()));
  if (!chain || !source) {
    BIO_free_all(source);
    return 0;
  }
  BIO_set_flags(chain.get(), BIO_FLAGS_BASE64_NO_NL);
  BIO_push(chain.get(), source);
  return std::max(BIO_read(chain.get(), bytes, sizeof bytes), 0);
}

// How many bytes of plain text there are; -1 when the padding is wrong.
int Decrypt(Secrets& secrets, int cipher_size) {
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
      EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  int size = 0;
  int last = 0;
  const bool done =
      context &&
      EVP_DecryptInit_ex(context.get(), EVP_des_ede3_cbc(), nullptr, secrets.key,
                         InitialisationVector().data()) == 1 &&
      EVP_DecryptUpdate(context.get(), secrets.plain, &size, secrets.cipher, cipher_size) == 1 &&
      EVP_DecryptFinal_ex(context.get(), secrets.plain + size, &last) == 1;
  return done ? size + last : -1;
}

}  // namespace

WideText DecryptProxyPassword(std::wstring_view cipher_text, std::wstring_view key) {
  StartCrypto();
  const auto secrets = std::make_unique<Secrets>();
  MakeKey(key, secrets->key);
  const int cipher_size = DecodeBase64(WideToUtf8(cipher_text), secrets->cipher);
  const int size = Decrypt(*secrets, cipher_size);
  if (size < 0) return {};
  const std::string_view plain(reinterpret_cast<const char*>(secrets->plain),
                               static_cast<std::size_t>(size));
  if (!IsUtf8(plain)) return {};
  const std::wstring_view wide(secrets->wide, Utf8ToWide(plain, secrets->wide));
  return wide.size() <= kMaxPlainCharacters ? WideText(wide) : WideText();
}

}  // namespace wexpol
