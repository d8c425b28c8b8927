// The programs whose requests are never filtered: table "never_block_apps".

#ifndef WEBFILTER_NEVER_BLOCK_APP_H_
#define WEBFILTER_NEVER_BLOCK_APP_H_

#include <cstdint>

#include "records/record.h"

struct tblNeverBlockApp {
  std::int32_t id = -1;
  records::Text file_name;
  std::int64_t row_version = -1;
};

class WEXPOL_API CNeverBlockApp : public records::Record<CNeverBlockApp, tblNeverBlockApp> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_NEVER_BLOCK_APP_H_
