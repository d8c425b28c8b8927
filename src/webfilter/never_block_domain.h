// The domains that are never filtered: table "never_block_domains".

#ifndef WEBFILTER_NEVER_BLOCK_DOMAIN_H_
#define WEBFILTER_NEVER_BLOCK_DOMAIN_H_

#include <cstdint>

#include "records/record.h"

struct tblNeverBlockDomain {
  std::int32_t id = -1;
  records::Text domain;
  std::int64_t row_version = -1;
};

class WEXPOL_API CNeverBlockDomain
    : public records::Record<CNeverBlockDomain, tblNeverBlockDomain> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_NEVER_BLOCK_DOMAIN_H_
