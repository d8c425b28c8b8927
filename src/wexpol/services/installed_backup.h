// Which backup clients are installed beside the agent.

#ifndef WEXPOL_SERVICES_INSTALLED_BACKUP_H_
#define WEXPOL_SERVICES_INSTALLED_BACKUP_H_

#include <optional>
#include <string>

#include "wexpol/services/device_subservice_version.h"

namespace wexpol {

// The version in the client's uninstall entry, as it stands there; nothing when it has none.
std::optional<std::string> InstalledBackupVersion(SUBSERVICE_ID id);

}  // namespace wexpol

#endif  // WEXPOL_SERVICES_INSTALLED_BACKUP_H_
