#include "sweeps/disk.h"

#include <cstring>
#include <map>

#include "sweeps/faults.h"

namespace sweeps {
namespace {

sqlite3_vfs* base = nullptr;
sqlite3_vfs disk;

struct Methods {
  sqlite3_io_methods faulty;
  const sqlite3_io_methods* real;
};
std::map<const sqlite3_io_methods*, Methods> methods;
std::map<const sqlite3_file*, bool> is_log;

const sqlite3_io_methods& Real(sqlite3_file* file) {
  return *reinterpret_cast<const Methods*>(file->pMethods)->real;
}

void Note(sqlite3_file* file, decltype(Disk::Change::what) what, sqlite3_int64 at,
          std::string bytes = {}) {
  if (Disk::before_change) Disk::before_change();
  const auto found = is_log.find(file);
  if (Disk::recording && found != is_log.end()) {
    Disk::changes.push_back({what, found->second, at, std::move(bytes)});
  }
}

int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
  if (Fails(kFull)) return SQLITE_FULL;
  if (Fails(kWrite)) return SQLITE_IOERR_WRITE;
  if (Fails(kShortWrite)) {
    Real(file).xWrite(file, data, size / 2, at);
    return SQLITE_FULL;
  }
  Note(file, Disk::Change::kWritten, at,
       {static_cast<const char*>(data), static_cast<std::size_t>(size)});
  return Real(file).xWrite(file, data, size, at);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  if (Fails(kTruncate)) return SQLITE_IOERR_TRUNCATE;
  Note(file, Disk::Change::kTruncated, size);
  return Real(file).xTruncate(file, size);
}

int Sync(sqlite3_file* file, int flags) {
  if (Fails(kSync)) return SQLITE_IOERR_FSYNC;
  Note(file, Disk::Change::kSynced, 0);
  return Real(file).xSync(file, flags);
}

int Size(sqlite3_file* file, sqlite3_int64* size) {
  return Fails(kSize) ? SQLITE_IOERR_FSTAT : Real(file).xFileSize(file, size);
}

int Read(sqlite3_file* file, void* data, int size, sqlite3_int64 at) {
  return Fails(kRead) ? SQLITE_IOERR_READ : Real(file).xRead(file, data, size, at);
}

int Lock(sqlite3_file* file, int level) {
  return Fails(kLock) ? SQLITE_IOERR_LOCK : Real(file).xLock(file, level);
}

int MapShared(sqlite3_file* file, int region, int size, int extend, void volatile** out) {
  return Fails(kSharedMemory) ? SQLITE_IOERR_SHMMAP
                              : Real(file).xShmMap(file, region, size, extend, out);
}

int LockShared(sqlite3_file* file, int offset, int count, int flags) {
  if ((flags & SQLITE_SHM_LOCK) && Fails(kSharedMemory)) return SQLITE_IOERR_SHMLOCK;
  return Real(file).xShmLock(file, offset, count, flags);
}

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
  const int code = base->xOpen(base, name, file, flags, out);
  if (code != SQLITE_OK || !file->pMethods) return code;
  Methods& its = methods[file->pMethods];
  its = {*file->pMethods, file->pMethods};
  its.faulty.xWrite = Write;
  its.faulty.xTruncate = Truncate;
  its.faulty.xSync = Sync;
  its.faulty.xFileSize = Size;
  its.faulty.xRead = Read;
  its.faulty.xLock = Lock;
  its.faulty.xShmMap = MapShared;
  its.faulty.xShmLock = LockShared;
  file->pMethods = &its.faulty;
  is_log.erase(file);
  if (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL)) is_log[file] = flags & SQLITE_OPEN_WAL;
  return code;
}

}  // namespace

Disk::Disk() : former_(sqlite3_vfs_find(nullptr)) {
  // The cipher's name is its own, a hyphen, and that of the file system it stands on.
  base = sqlite3_vfs_find(std::strchr(former_->zName, '-') + 1);
  disk = *base;
  disk.zName = "sweep";
  disk.xOpen = Open;
  sqlite3_vfs_register(&disk, 0);
  sqlite3mc_vfs_create("sweep", 1);
}

Disk::~Disk() {
  sqlite3_vfs_register(former_, 1);
  sqlite3mc_vfs_destroy("multipleciphers-sweep");
  sqlite3_vfs_unregister(&disk);
}

}  // namespace sweeps
