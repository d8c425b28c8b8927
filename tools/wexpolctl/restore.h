// The one way in which a backup takes the database's place.

#ifndef WEXPOL_WEXPOLCTL_RESTORE_H_
#define WEXPOL_WEXPOLCTL_RESTORE_H_

#include <string>

namespace wexpolctl {

// Checks a copy of the backup and puts it in the database's place. Answers where the former file
// was put: beside it, as "wexpol.db.replaced" or with the next number that is free; empty when
// there was none. Throws a Failure, with the database as it was: also while a process has it open.
std::wstring RestoreDatabase(const std::wstring& database, const std::wstring& backup);

// What keeps a file from being a backup, in words; empty when nothing does.
std::string FaultOfBackup(const std::wstring& file);

// Throws a Failure while another process has the database open and would go on with it.
void RequireUnused(const std::wstring& database);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_RESTORE_H_
