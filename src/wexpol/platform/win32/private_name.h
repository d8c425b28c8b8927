// Names in the spaces that all processes of the machine share, kept apart for redirected ones.

#ifndef WEXPOL_PLATFORM_WIN32_PRIVATE_NAME_H_
#define WEXPOL_PLATFORM_WIN32_PRIVATE_NAME_H_

#include <string>

namespace wexpol {

// One name, without a separator, for the whole path of `folder`: the same however its letters are
// written, another for every other folder.
std::wstring PrivateName(const std::wstring& folder);

// `name`, or while shared objects are redirected a name of that place.
std::wstring SharedObjectName(const std::wstring& name);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_WIN32_PRIVATE_NAME_H_
