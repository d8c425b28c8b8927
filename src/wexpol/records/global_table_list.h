// The tables of the version report.

#ifndef WEXPOL_RECORDS_GLOBAL_TABLE_LIST_H_
#define WEXPOL_RECORDS_GLOBAL_TABLE_LIST_H_

#include <cstdint>

#include "wexpol/records/statement.h"

namespace wexpol {

struct GlobalTable {
  const char* name;
  std::uint64_t bit;
  Sql max_version;
};

// In report order. The bit of time_zones stands apart from the run of the others.
inline constexpr GlobalTable kGlobalTables[] = {
    {"categories", 0x8000000, "SELECT max(row_version) FROM categories"},
    {"icat_keywords", 0x10000000, "SELECT max(row_version) FROM icat_keywords"},
    {"never_block_apps", 0x20000000, "SELECT max(row_version) FROM never_block_apps"},
    {"never_block_domains", 0x40000000, "SELECT max(row_version) FROM never_block_domains"},
    {"safe_search_parameters", 0x80000000, "SELECT max(row_version) FROM safe_search_parameters"},
    {"service_configurations", 0x100000000, "SELECT max(row_version) FROM service_configurations"},
    {"services", 0x200000000, "SELECT max(row_version) FROM services"},
    {"time_servers", 0x400000000, "SELECT max(row_version) FROM time_servers"},
    {"time_zones", 0x20000000000, "SELECT max(row_version) FROM time_zones"},
};

}  // namespace wexpol

#endif  // WEXPOL_RECORDS_GLOBAL_TABLE_LIST_H_
