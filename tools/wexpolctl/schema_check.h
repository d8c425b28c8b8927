// A database compared with the schema that this version makes.

#ifndef WEXPOL_WEXPOLCTL_SCHEMA_CHECK_H_
#define WEXPOL_WEXPOLCTL_SCHEMA_CHECK_H_

#include <sqlite3.h>

#include <string>
#include <vector>

namespace wexpolctl {

struct SchemaDifferences {
  std::vector<std::string> faults;  // "the table nics is missing"
  std::vector<std::string> notes;   // An index that is missing changes no answer.
};

// Looks for what the schema makes; what the database has besides is nobody's fault.
SchemaDifferences CompareWithSchema(sqlite3* db);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_SCHEMA_CHECK_H_
