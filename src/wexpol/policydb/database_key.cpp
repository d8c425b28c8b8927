#include "wexpol/policydb/database_key.h"

#include <sqlite3.h>

#include <cstdint>

#include "wexpol/platform/wipe.h"

// Of the engine: why the key that it has derived is none for the file.
extern "C" int wexpol_engine_key_code(sqlite3* db);

namespace wexpol {

// The two halves, little-endian. Neither they nor the whole lie in the built file: what lies there
// is masked, and volatile keeps the compiler from unmasking it.
std::array<unsigned char, 8> DatabaseKey() {
  static volatile const std::uint32_t kMasked[] = {0xCC8E7D3D, 0x2B4C4215};
  static volatile const std::uint32_t kMasks[] = {0xA7135CD9, 0x1E84B26F};
  std::array<unsigned char, 8> key;
  for (std::size_t i = 0; i < key.size(); ++i) {
    const std::size_t half = i / 4;
    key[i] = static_cast<unsigned char>((kMasked[half] ^ kMasks[half]) >> (i % 4 * 8));
  }
  return key;
}

int ApplyDatabaseKey(sqlite3* db) {
  std::array<unsigned char, 8> key = DatabaseKey();
  const WipeAtEnd wipe(key);
  const int code = sqlite3_key(db, key.data(), static_cast<int>(key.size()));
  return code == SQLITE_OK ? wexpol_engine_key_code(db) : code;
}

}  // namespace wexpol
