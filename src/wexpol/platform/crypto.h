// The cryptographic library, started the one way that is safe.

#ifndef WEXPOL_PLATFORM_CRYPTO_H_
#define WEXPOL_PLATFORM_CRYPTO_H_

namespace wexpol {

// To be called before any use of libcrypto. Its configuration file, which a variable of the process
// or a folder that anybody may make can name, is not read: it could have a library loaded.
void StartCrypto();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_CRYPTO_H_
