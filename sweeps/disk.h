// The file system below the cipher, as something that fails, ends the process or is recorded.

#ifndef WEXPOL_SWEEPS_DISK_H_
#define WEXPOL_SWEEPS_DISK_H_

#include <sqlite3.h>

#include <functional>
#include <string>
#include <vector>

namespace sweeps {

// While it lives, what is opened anew stands on it.
class Disk {
 public:
  Disk();
  ~Disk();
  Disk(const Disk&) = delete;
  Disk& operator=(const Disk&) = delete;

  // Called before each change of a file, when set.
  static inline std::function<void()> before_change;

  // A change of a file, in their order, while `recording`.
  struct Change {
    enum { kWritten, kTruncated, kSynced } what;
    bool log;  // Of the write-ahead log, else of the database.
    sqlite3_int64 at;
    std::string bytes;
  };
  static inline bool recording = false;
  static inline std::vector<Change> changes;

 private:
  sqlite3_vfs* former_;
};

}  // namespace sweeps

#endif  // WEXPOL_SWEEPS_DISK_H_
