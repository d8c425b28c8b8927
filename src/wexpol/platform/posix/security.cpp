#include "wexpol/platform/security.h"

// The host's shared objects are files; whoever creates one sets its permissions.
namespace wexpol {

void LocalMemoryCloser::operator()(void*) const {}

}  // namespace wexpol

CSecAttrib::CSecAttrib() = default;
