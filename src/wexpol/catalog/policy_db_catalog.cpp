// The facade's operations over all tables.

#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/facade.h"

bool CPolicyDB::IsProvisioned() {
  return wexpol::Ask([&] { return IsValidDB() && wexpol::HasAllTables(handle()); });
}
