/* The database engine: SQLite3 Multiple Ciphers with this library's choices, in one translation
 * unit. */

/* A connection is used by one thread at a time. */
#define SQLITE_THREADSAFE 2
#define SQLITE_DEFAULT_MEMSTATUS 0
/* 32 MB of pages: a synchronisation stays in memory until its commit, without spilling half-way. */
#define SQLITE_DEFAULT_CACHE_SIZE -32000
/* Temporary files would not be encrypted. */
#define SQLITE_TEMP_STORE 2
#define SQLITE_LIKE_DOESNT_MATCH_BLOBS
#define SQLITE_OMIT_LOAD_EXTENSION
#define SQLITE_OMIT_SHARED_CACHE
#define SQLITE_USE_ALLOCA
#define HAVE_USLEEP 1
/* Files are their owner's alone; side files take after the database. */
#define SQLITE_DEFAULT_FILE_PERMISSIONS 0600
/* The log that stays when the last connection closes is cut to nothing; any limit asks for that. */
#define SQLITE_DEFAULT_JOURNAL_SIZE_LIMIT 67108864

/* AEGIS is the only cipher: it authenticates every page, and a changed page is refused. */
#define CODEC_TYPE 7
#define HAVE_CIPHER_AES_128_CBC 0
#define HAVE_CIPHER_AES_256_CBC 0
#define HAVE_CIPHER_CHACHA20 0
#define HAVE_CIPHER_SQLCIPHER 0
#define HAVE_CIPHER_RC4 0
#define HAVE_CIPHER_ASCON128 0

/* The shared library exports the engine: hosts use it on the library's connections. */
#ifdef _WIN32
#define SQLITE_API __declspec(dllexport)
#else
#define SQLITE_API __attribute__((visibility("default")))
#endif

#define SQLITE_EXTRA_INIT_MUTEXED wexpol_engine_init
#include "sqlite3.c"

/* Encryption of single values is left out together with the ciphers that it would need. */
int sqlite3_vle_init(sqlite3* db, char** message, const sqlite3_api_routines* api) {
  (void)db, (void)message, (void)api;
  return SQLITE_OK;
}

/* The cipher's own derivation of a key, which leaves none where memory is denied. */
static void (*derive_key)(void*, char*, int, int, unsigned char*);

static void derive_key_or_none(void* cipher, char* password, int size, int rekey,
                               unsigned char* salt) {
  AegisCipher* aegis = cipher;
  memset(aegis->m_key, 0, sizeof aegis->m_key);
  derive_key(cipher, password, size, rekey, salt);
}

/* What sqlite3_key() does not look at: whether there was memory to derive the key, and whether the
   salt at the beginning of the file could be read. Without it the engine takes the file for a new
   one, and nothing in it for anything. SQLITE_OK when the key is right. */
int wexpol_engine_key_code(sqlite3* db) {
  static const unsigned char none[sizeof((AegisCipher*)0)->m_key];
  const AegisCipher* cipher = sqlite3mcGetCodec(db, "main")->m_readCipher;
  sqlite3_file* file = sqlite3PagerFile(sqlite3BtreePager(db->aDb[0].pBt));
  unsigned char salt[SALTLENGTH_AEGIS];
  if (memcmp(cipher->m_key, none, sizeof none) == 0) return SQLITE_NOMEM;
  if (!isOpen(file)) return SQLITE_OK;
  const int code = sqlite3OsRead(file, salt, sizeof salt, 0);
  if (code == SQLITE_IOERR_SHORT_READ) return SQLITE_OK; /* indeed a new file */
  if (code == SQLITE_OK && memcmp(cipher->m_salt, salt, sizeof salt) == 0) return SQLITE_OK;
  return SQLITE_IOERR;
}

/* Sets the cipher's parameters and key derivation for every connection of the process. Runs inside
   sqlite3_initialize() on the table from which each new connection copies its own. Key derivation
   costs the least that Argon2 accepts: the key is a constant, stretching it protects nothing. The
   128-bit variant is the fastest that does not need a stack aligned to 32 bytes, which GCC cannot
   give on Windows. */
int wexpol_engine_init(const char* unused) {
  static const struct {
    const char* name;
    int value;
  } kParameters[] = {{"tcost", 1}, {"mcost", 8}, {"pcost", 1}, {"algorithm", AEGIS_ALGORITHM_128L}};
  (void)unused;
  CipherParams* entry = sqlite3mcGetCipherParams(NULL, CIPHER_NAME_AEGIS);
  for (; entry->m_name[0] != 0; ++entry) {
    for (size_t i = 0; i < sizeof kParameters / sizeof kParameters[0]; ++i) {
      if (strcmp(entry->m_name, kParameters[i].name) == 0) {
        entry->m_value = entry->m_default = kParameters[i].value;
      }
    }
  }
  CipherDescriptor* only = &globalCodecDescriptorTable[0];
  if (only->m_generateKey != derive_key_or_none) derive_key = only->m_generateKey;
  only->m_generateKey = derive_key_or_none;
  return SQLITE_OK;
}
