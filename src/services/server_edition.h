// Which editions of Windows are servers.

#ifndef SERVICES_SERVER_EDITION_H_
#define SERVICES_SERVER_EDITION_H_

#include "platform/system_info.h"

namespace services {

// False for a version that is not known here.
bool IsServerEdition(const platform::WindowsVersion& version);

}  // namespace services

#endif  // SERVICES_SERVER_EDITION_H_
