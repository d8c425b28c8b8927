// The names of the objects that processes share.

#ifndef WEXPOL_PLATFORM_WIN32_SHARED_NAME_H_
#define WEXPOL_PLATFORM_WIN32_SHARED_NAME_H_

#include <string>

namespace wexpol {

// `name`, or while shared objects are redirected a name of that place.
std::wstring SharedObjectName(const std::wstring& name);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIN32_SHARED_NAME_H_
