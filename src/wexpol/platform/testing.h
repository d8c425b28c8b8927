// For tests and tools: everything that processes share is moved to a private place.

#ifndef WEXPOL_PLATFORM_TESTING_H_
#define WEXPOL_PLATFORM_TESTING_H_

#include <string>

#include "wexpol/platform/export.h"

namespace wexpol {

// Moves the registry, the file locations and the names of shared objects (mutex, shared memory) to
// a place that belongs to `folder`, for this process. Processes that name the same folder meet
// there. The last part of the folder's path must be unique; the folder itself must exist. An empty
// path is the machine's own again. Not while another thread is in the library.
WEXPOL_API void RedirectMachine(const std::wstring& folder);

// The redirected registry with all it holds is gone; nothing happens while none is redirected.
WEXPOL_API void DeleteRedirectedRegistry();

// The pieces of RedirectMachine; the file locations are CFilePaths::Redirect.
void RedirectRegistry(const std::wstring& folder);
void RedirectSharedObjects(const std::wstring& folder);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_TESTING_H_
