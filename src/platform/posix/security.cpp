#include "platform/security.h"

// The host's shared objects are files; whoever creates one sets its permissions.
namespace platform {

void LocalMemoryCloser::operator()(void*) const {}

}  // namespace platform

CSecAttrib::CSecAttrib() = default;
