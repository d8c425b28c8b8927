// The facade's operations over all tables.

#include "wexpol/catalog/catalog.h"
#include "wexpol/catalog/content_hash.h"
#include "wexpol/policydb/facade.h"
#include "wexpol/records/global_tables.h"

bool CPolicyDB::IsProvisioned() {
  return wexpol::Ask([&] { return IsValidDB() && wexpol::HasAllTables(handle()); });
}

bool CPolicyDB::GetContentHash(std::string& hash, const char* table) {
  return wexpol::Ask([&] {
    const wexpol::RecordClass* found = table ? wexpol::FindTable(table) : nullptr;
    return found && wexpol::ContentHash(handle(), found->table(), hash);
  });
}

void CPolicyDB::GetGlobalTableJson(std::uint64_t& emptyMask, std::string& out) {
  wexpol::Ask([&] { return CGlobalTables().GenerateJson(emptyMask, out, handle()), true; });
}
