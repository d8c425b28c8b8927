// For tools and tests that are linked with the library, not for hosts; nothing of it is exported.

#ifndef WEXPOL_POLICYDB_TOOLS_H_
#define WEXPOL_POLICYDB_TOOLS_H_

class CPolicyDB;
struct sqlite3;

namespace wexpol {

// The connection of a session, which stays the session's; null when it is closed.
sqlite3* HandleOf(const CPolicyDB& session);

}  // namespace wexpol

#endif  // WEXPOL_POLICYDB_TOOLS_H_
