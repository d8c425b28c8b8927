// The file that the sweeps work on, and what is looked for in it afterwards.

#ifndef WEXPOL_SWEEPS_STORE_H_
#define WEXPOL_SWEEPS_STORE_H_

#include <sqlite3.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sweeps/sweep.h"
#include "wexpol.h"

namespace sweeps {

inline constexpr char kAccessCode[] = "60718";
inline constexpr int kReadWrite = SQLITE_OPEN_READWRITE;

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

// A provisioned file with its backup at the installed locations of a folder of their own, which
// goes with it; registry and shared objects are redirected there, and the clock stands still. One
// at a time.
class Store {
 public:
  Store();
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  const std::wstring& folder() const { return folder_; }
  // What is in the file from now on is what Reset puts back; `also_backup` takes it as the backup.
  void Keep(bool also_backup);
  void Reset() const;
  // The bytes that Reset puts into the file.
  const std::string& kept() const { return kept_; }

 private:
  std::wstring folder_;
  std::string kept_;
  std::string backup_;
};

// The documents of samples/console by the name of their table; and all of them into their tables.
const std::map<std::string, std::string>& Samples();
void StoreSamples();

const std::wstring& DatabasePath();
// The file beside the database that ends so.
std::wstring Beside(const wchar_t* suffix);
std::string ReadFileBytes(const std::wstring& path);
void WriteFileBytes(const std::wstring& path, const std::string& bytes);

// A handle past the session; null when there is none to be had.
Handle OpenRaw();
bool Execute(sqlite3* db, const std::string& sql);

// The rows of all tables, sorted; nothing when not all can be read.
using Rows = std::vector<std::string>;
std::optional<Rows> ReadRows(sqlite3* db);

// A synchronisation that is to be stored whole: three tables get rows that name its number.
std::string GenerationDocument(long number);
bool StoreGeneration(CPolicyDB& db, const char* document);
// The number that the three tables agree on; -1 when they do not.
long StoredGeneration(sqlite3* db);

// What whoever opens a file next must find after damage: a whole generation, or a damage that is
// noticed and cured by the backup, which holds generation 0.
void JudgeFile(const std::string& point, long latest, Figures& figures);

}  // namespace sweeps

#endif  // WEXPOL_SWEEPS_STORE_H_
