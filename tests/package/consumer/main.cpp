// Uses the library, its engine and its exceptions; exits with 0 when all of them answer.

#include <wexpol.h>
#include <wexpol_c.h>

#include <cstdio>
#include <cstring>
#include <list>

int main() {
  sqlite3* db = nullptr;
  std::list<CDevice*> devices;
  bool good = std::strcmp(wexpol_version(), WEXPOL_VERSION) == 0;
  try {
    const CPolicyDB refused("0", L"none.db", SQLITE_OPEN_READWRITE, 0);
    good = false;
  } catch (int code) {
    good = good && code == 0;
  }
  CPolicyDB closed("60718", L"none.db", SQLITE_OPEN_READWRITE, 0);
  good = good && !closed.GetDevices(devices, nullptr, 0);
  good = good && sqlite3_open(":memory:", &db) == SQLITE_OK;
  good =
      good && sqlite3_exec(db, "CREATE TABLE networks (id, name)", nullptr, nullptr, nullptr) == 0;
  sqlite3_close(db);
  std::puts(good ? "good" : "bad");
  return good ? 0 : 1;
}
