#include "wexpol/platform/testing.h"

namespace wexpol {

void RedirectMachine(const std::wstring& folder) {
  RedirectFiles(folder);
  RedirectRegistry(folder);
  RedirectSharedObjects(folder);
  ResetAgentKeysForTesting();
  ResetLogForTesting();
}

}  // namespace wexpol
