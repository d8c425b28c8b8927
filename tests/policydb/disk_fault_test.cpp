// What a disk that fails leaves of a synchronisation.

#include <cstring>
#include <map>

#include "tests/support/policy_test.h"

namespace {

// The file system below the cipher, whose writes fail once `left` more were done; -1 is never.
class FaultyDisk {
 public:
  FaultyDisk() : former_(sqlite3_vfs_find(nullptr)) {
    // The cipher's name is its own, a hyphen, and that of the file system it stands on.
    base_ = sqlite3_vfs_find(std::strchr(former_->zName, '-') + 1);
    disk_ = *base_;
    disk_.zName = "faulty";
    disk_.xOpen = Open;
    sqlite3_vfs_register(&disk_, 0);
    sqlite3mc_vfs_create("faulty", 1);
  }
  ~FaultyDisk() {
    sqlite3_vfs_register(former_, 1);
    sqlite3mc_vfs_destroy("multipleciphers-faulty");
    sqlite3_vfs_unregister(&disk_);
  }

  static inline int left = -1;

 private:
  struct Methods {
    sqlite3_io_methods faulty;
    const sqlite3_io_methods* real;
  };

  static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
    const int code = base_->xOpen(base_, name, file, flags, out);
    if (code != SQLITE_OK || !file->pMethods) return code;
    Methods& methods = methods_[file->pMethods];
    methods = {*file->pMethods, file->pMethods};
    methods.faulty.xWrite = Write;
    file->pMethods = &methods.faulty;
    return code;
  }

  static int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
    if (left == 0) return SQLITE_FULL;
    if (left > 0) --left;
    return reinterpret_cast<const Methods*>(file->pMethods)->real->xWrite(file, data, size, at);
  }

  static inline sqlite3_vfs* base_ = nullptr;
  static inline std::map<const sqlite3_io_methods*, Methods> methods_;
  sqlite3_vfs* former_;
  sqlite3_vfs disk_;
};

class DiskFaultTest : public PolicyTest {
 protected:
  // What is in the file for whoever opens it next; -1 when it is damaged.
  int StoredLogins() {
    CPolicyDB db(kAccessCode, path().c_str(), kReadWrite, 100);
    RecordList<CLogin> logins;
    if (!db.CheckIntegrity() || !db.GetLogins(logins.list, nullptr, 0)) return -1;
    return static_cast<int>(logins.list.size());
  }
};

TEST_F(DiskFaultTest, ATransactionIsStoredWholeOrNotAtAll) {
  std::string many = "[{\"id\": 1}";
  for (int i = 2; i <= 300; ++i) many += ",{\"id\": " + std::to_string(i) + "}";
  many += "]";
  const FaultyDisk disk;
  bool done = false;
  int faults = 0;
  for (; !done; ++faults) {
    CPolicyDB db(kAccessCode, path().c_str(), kReadWrite, 100);
    FaultyDisk::left = faults;
    done = db.Transaction(TRANSACTION_BEGIN) && db.ClearLogins() && db.AddLogins(many.c_str()) &&
           db.Transaction(TRANSACTION_COMMIT);
    FaultyDisk::left = -1;
    db.CloseDB();
    ASSERT_EQ(StoredLogins(), done ? 300 : 0) << faults;
  }
  EXPECT_GT(faults, 3);
}

TEST_F(DiskFaultTest, WithoutATransactionTheRecordsBeforeTheFaultStay) {
  const FaultyDisk disk;
  bool done = false;
  for (int faults = 0; !done; ++faults) {
    Sql("DELETE FROM logins");
    CPolicyDB db(kAccessCode, path().c_str(), kReadWrite, 100);
    FaultyDisk::left = faults;
    done = db.AddLogins("[{\"id\": 1}, {\"id\": 2}, {\"id\": 3}]");
    FaultyDisk::left = -1;
    EXPECT_EQ(db.GetError().empty(), done);
    db.CloseDB();
    const int stored = StoredLogins();
    EXPECT_TRUE(done ? stored == 3 : stored >= 0 && stored < 3) << stored << " after " << faults;
  }
}

}  // namespace
