// Work that must not wait for other processes.

#ifndef WEXPOL_RECORDS_NO_WAIT_H_
#define WEXPOL_RECORDS_NO_WAIT_H_

#include <sqlite3.h>

namespace wexpol {

// While it lives, a statement of a session that finds the file locked fails at once instead of
// waiting for the busy timeout. A handle of the host's, which has no statement cache, goes on
// waiting as the host has set it.
class NoWait {
 public:
  explicit NoWait(sqlite3* db);
  ~NoWait();
  NoWait(const NoWait&) = delete;
  NoWait& operator=(const NoWait&) = delete;

 private:
  sqlite3* db_;
  int timeout_ms_ = 0;  // What is to be set again; 0 when nothing is.
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_NO_WAIT_H_
