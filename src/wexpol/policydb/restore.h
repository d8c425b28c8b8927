// Puts the backup's content into the database file.

#ifndef WEXPOL_POLICYDB_RESTORE_H_
#define WEXPOL_POLICYDB_RESTORE_H_

#include <string>

namespace wexpol {

// True when the database holds exactly the backup, for every process that has it open, too; else it
// is as it was. A process that is killed in between leaves one of the two.
//
// A database that opens with the key is overwritten by the engine, in one transaction. One that
// does not, or is missing, is replaced by a copy with its rights; what the engine had left beside
// it never meets the copy.
[[nodiscard]] bool RestoreFile(const std::wstring& backup, const std::wstring& database,
                               int busy_timeout_ms);

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_RESTORE_H_
