// Which editions of Windows are servers.

#ifndef WEXPOL_SERVICES_SERVER_EDITION_H_
#define WEXPOL_SERVICES_SERVER_EDITION_H_

#include "wexpol/platform/system_info.h"

namespace wexpol {

// False for a version that is not known here.
bool IsServerEdition(const WindowsVersion& version);

}  // namespace wexpol

#endif  // WEXPOL_SERVICES_SERVER_EDITION_H_
