/* A Linux host that links the system's SQLite before the library: each keeps to its own engine. */

#include <stdio.h>
#include <string.h>
#include <wexpol_c.h>

const char* sqlite3_libversion(void);
int sqlite3_open(const char* path, void** db);
int sqlite3_close(void* db);

int main(int argc, char** argv) {
  wexpol_session* session;
  char* rows = NULL;
  void* own = NULL;
  int good = argc == 3 && strcmp(sqlite3_libversion(), argv[2]) == 0;
  good = good && sqlite3_open(":memory:", &own) == 0;
  good = good && wexpol_open(&session, "60718", argc > 1 ? argv[1] : NULL, 0, 2000) == 0;
  good = good && wexpol_is_provisioned(session) && wexpol_check(session);
  good = good && wexpol_replace_table(session, "networks", "[{\"id\": 1,\"account_id\": 1}]") == 0;
  good = good && wexpol_list_table(session, "networks", NULL, 0, &rows) == 0;
  good = good && sqlite3_close(own) == 0;
  if (good) puts(rows);
  wexpol_free(rows);
  return good ? 0 : 1;
}
