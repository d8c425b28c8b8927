// The names of the objects that processes share.

#ifndef PLATFORM_WIN32_SHARED_NAME_H_
#define PLATFORM_WIN32_SHARED_NAME_H_

#include <string>

namespace platform {

// `name`, or while shared objects are redirected a name of that place.
std::wstring SharedObjectName(const std::wstring& name);

}  // namespace platform

#endif  // PLATFORM_WIN32_SHARED_NAME_H_
