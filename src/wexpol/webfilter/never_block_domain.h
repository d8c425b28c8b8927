// The domains that are never filtered: table "never_block_domains".

#ifndef WEXPOL_WEBFILTER_NEVER_BLOCK_DOMAIN_H_
#define WEXPOL_WEBFILTER_NEVER_BLOCK_DOMAIN_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblNeverBlockDomain {
  std::int32_t id = -1;
  wexpol::Text domain;
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// A domain that the filter leaves alone. The same for all customers.
class WEXPOL_API CNeverBlockDomain : public wexpol::Record<CNeverBlockDomain, tblNeverBlockDomain> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_NEVER_BLOCK_DOMAIN_H_
