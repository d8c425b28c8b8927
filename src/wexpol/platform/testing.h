// For tests and tools, not for hosts: a private place for all that belongs to the machine, and a
// clock that is set. Only RedirectMachine is exported; the rest is for what is linked with the
// library.

#ifndef WEXPOL_PLATFORM_TESTING_H_
#define WEXPOL_PLATFORM_TESTING_H_

#include <cstdint>
#include <string>

#include "wexpol/platform/export.h"

namespace wexpol {

class Clock;

// Gives this process a home of its own in `folder`, which must exist: files, log, registry, and
// the names of shared objects (mutex, shared memory). Processes that name the same folder meet
// there. What is remembered of the former home is forgotten. An empty path is the machine's own
// again. Not while another thread is in the library.
WEXPOL_API void RedirectMachine(const std::wstring& folder);

// The pieces of RedirectMachine.
void RedirectFiles(const std::wstring& folder);
void RedirectRegistry(const std::wstring& folder);
void RedirectSharedObjects(const std::wstring& folder);

// The redirected registry with all it holds is gone; nothing happens while none is redirected.
void DeleteRedirectedRegistry();

// The clock that is used from now on, which must outlive its use; null is the machine's again.
void SetClockForTesting(const Clock* clock);

// Forgets the paths of the agent's keys, which are looked up once per process.
void ResetAgentKeysForTesting();

// Forgets what the log looks up once per process: path, threshold, columns. A threshold above 0 is
// then used instead of the settings'.
void ResetLogForTesting(std::uint64_t threshold = 0);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_TESTING_H_
