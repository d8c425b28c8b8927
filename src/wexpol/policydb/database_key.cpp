#include "wexpol/policydb/database_key.h"

#include <sqlite3.h>

#include <cstdint>

namespace wexpol {

// The bytes are put together here, little-endian, so that they lie nowhere in the file of the
// library as one text.
void ApplyDatabaseKey(sqlite3* db) {
  static volatile const std::uint32_t kParts[] = {0x6B9D21E4, 0x35C8F07A};
  unsigned char key[8];
  for (int i = 0; i < 8; ++i) key[i] = static_cast<unsigned char>(kParts[i / 4] >> (i % 4 * 8));
  sqlite3_key(db, key, sizeof key);
}

}  // namespace wexpol
