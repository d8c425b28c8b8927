#include "wexpol/platform/testing.h"

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/file_paths.h"

namespace wexpol {

void RedirectMachine(const std::wstring& folder) {
  CFilePaths::Redirect(folder);
  RedirectRegistry(folder);
  RedirectSharedObjects(folder);
  ResetAgentKeysForTesting();
}

}  // namespace wexpol
