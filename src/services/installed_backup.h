// Which backup clients are installed beside the agent.

#ifndef SERVICES_INSTALLED_BACKUP_H_
#define SERVICES_INSTALLED_BACKUP_H_

#include <optional>
#include <string>

#include "services/device_subservice_version.h"

namespace services {

// The version in the client's uninstall entry, as it stands there; nothing when it has none.
std::optional<std::string> InstalledBackupVersion(SUBSERVICE_ID id);

}  // namespace services

#endif  // SERVICES_INSTALLED_BACKUP_H_
