// The one way in which a backup takes the database's place.

#ifndef WEXPOL_WEXPOLCTL_RESTORE_H_
#define WEXPOL_WEXPOLCTL_RESTORE_H_

#include <string>

namespace wexpolctl {

// Checks the backup and puts a copy of it in the database's place. Answers where the former file
// was put: beside it, as "wexpol.db.replaced"; empty when there was none. Throws a Failure, with
// the database as it was.
std::wstring RestoreDatabase(const std::wstring& database, const std::wstring& backup);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_RESTORE_H_
