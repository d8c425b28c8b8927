// The programs whose requests are never filtered: table "never_block_apps".

#ifndef WEXPOL_WEBFILTER_NEVER_BLOCK_APP_H_
#define WEXPOL_WEBFILTER_NEVER_BLOCK_APP_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblNeverBlockApp {
  std::int32_t id = -1;
  wexpol::Text file_name;         // Of the executable.
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// A program that the filter leaves alone, by the name of its file. The same for all customers.
class WEXPOL_API CNeverBlockApp : public wexpol::Record<CNeverBlockApp, tblNeverBlockApp> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_NEVER_BLOCK_APP_H_
