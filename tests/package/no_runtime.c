/* For Microsoft's linker: a program without a C runtime, linked with the import library. */

#include <wexpol_c.h>

__declspec(dllimport) __declspec(noreturn) void ExitProcess(unsigned code);

void start(void) {
  wexpol_session* session;
  const int refused = wexpol_open(&session, "0", "none.db", 0, 0);
  ExitProcess(refused == 23 && wexpol_version()[0] == '1' ? 0 : 1);
}
