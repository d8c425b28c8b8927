// The report of which versions of the shared tables are here, and the console's answer to it.

#ifndef WEXPOL_RECORDS_GLOBAL_TABLES_H_
#define WEXPOL_RECORDS_GLOBAL_TABLES_H_

#include <cstdint>
#include <string>

#include "wexpol/platform/export.h"

struct sqlite3;

// Nine tables are the same for all customers and carry a row_version. Each has a bit of its own in
// a 64-bit mask; the console assigns the bits.
class WEXPOL_API CGlobalTables {
 public:
  // Replaces `out` with {"g": "bit,version;..."}, the highest row version of each table. A table
  // that is empty or missing has version 0, and its bit is added to `emptyMask`, which the caller
  // sets to 0 before.
  void GenerateJson(std::uint64_t& emptyMask, std::string& out, sqlite3* db) const;

  // The mask of the tables to fetch again, from an answer {"g": "bit,bit,..."}; 0 when it is none.
  std::uint64_t ParseJson(const char* json);

 protected:
  // One entry of the report.
  std::string GetMaxRowVersion(std::uint64_t& emptyMask, sqlite3* db, const char* table,
                               std::uint64_t bit) const;
};

#endif  // WEXPOL_RECORDS_GLOBAL_TABLES_H_
