// The tables that the console fills, and how each is synchronised.

#ifndef WEXPOL_WEXPOLCTL_TABLES_H_
#define WEXPOL_WEXPOLCTL_TABLES_H_

#include <span>
#include <string>
#include <string_view>

#include "wexpol/policydb/policy_db.h"
#include "wexpol/records/synchronise.h"

namespace wexpolctl {

struct SyncTable {
  const wexpol::RecordClass* record_class;
  // Replaces the table by a document; false leaves the session's error object in `error`.
  bool (*replace)(CPolicyDB& session, const char* json, std::string& error);

  const char* name() const { return record_class->table().name(); }
};

// In an order in which what points at a row comes after it.
std::span<const SyncTable> SyncTables();

// Null when the console does not fill a table of that name.
const SyncTable* FindSyncTable(std::string_view name);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_TABLES_H_
