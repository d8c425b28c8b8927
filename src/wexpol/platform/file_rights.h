// Who may use the agent's files. What holds secrets is its owner's: the system and administrators
// on Windows, the user who made it on the host. Nobody else may add a file beside it, which would
// be taken for the agent's own. A group may be let in to read.

#ifndef WEXPOL_PLATFORM_FILE_RIGHTS_H_
#define WEXPOL_PLATFORM_FILE_RIGHTS_H_

#include <string>

namespace wexpol {

// Makes the folder, with what is missing above it, or takes over one that is there. Files made in
// it take its rights, as far as MakePrivateFile and the database engine make them. `readers` names
// a group of users who may read, or is empty. False when the group is not known or the rights
// cannot be given.
[[nodiscard]] bool MakePrivateFolder(const std::wstring& folder, const std::wstring& readers = {});

// The same for the folder of the log, which processes of every user and integrity level write to
// and put aside.
[[nodiscard]] bool MakeLogFolder(const std::wstring& folder);

// Makes an empty file with the rights of its folder, whatever the process's mask. False when
// something has that name, or it cannot be made.
[[nodiscard]] bool MakePrivateFile(const std::wstring& path);

// The same for the user who makes it alone, whoever may use the folder.
[[nodiscard]] bool MakeOwnFile(const std::wstring& path);

// Gives `to` the rights that `from` has. False when one of them is not there or they cannot be
// given.
[[nodiscard]] bool TakeRights(const std::wstring& from, const std::wstring& to);

// Pure: the folders' rights in the notation of Windows (SDDL). `readers` is the group's SID as
// text, or empty.
std::wstring PrivateFolderDescriptor(const std::wstring& readers);
std::wstring LogFolderDescriptor();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_FILE_RIGHTS_H_
