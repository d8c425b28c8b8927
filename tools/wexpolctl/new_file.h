// Files that a command is told to make.

#ifndef WEXPOL_WEXPOLCTL_NEW_FILE_H_
#define WEXPOL_WEXPOLCTL_NEW_FILE_H_

#include <string>

namespace wexpolctl {

// Throws a Failure when something has this name: nothing is ever overwritten.
void RequireNew(const std::wstring& path);

// Makes the file for the user alone. Throws a Failure, and leaves none, when it cannot be written.
void WriteNewFile(const std::wstring& path, const std::string& text);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_NEW_FILE_H_
