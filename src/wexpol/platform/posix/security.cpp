#include "wexpol/platform/security.h"

// The host's shared objects are files; whoever creates one sets its permissions.
CSecAttrib::CSecAttrib() = default;
