#include "platform/testing.h"

#include "platform/agent_registry.h"
#include "platform/file_paths.h"

namespace platform {

void RedirectMachine(const std::wstring& folder) {
  CFilePaths::Redirect(folder);
  RedirectRegistry(folder);
  RedirectSharedObjects(folder);
  ResetAgentKeysForTesting();
}

}  // namespace platform
