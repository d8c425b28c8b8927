#include "wexpol/platform/crypto.h"

#include <openssl/crypto.h>

namespace wexpol {

void StartCrypto() { ::OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr); }

}  // namespace wexpol
