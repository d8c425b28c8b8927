// The keywords that tell the content of a page: table "icat_keywords".

#ifndef WEBFILTER_ICAT_KEYWORD_H_
#define WEBFILTER_ICAT_KEYWORD_H_

#include <cstdint>

#include "records/record.h"

struct tblIcatKeyword {
  std::int32_t id = -1;
  records::Text word;
  std::int64_t row_version = -1;
};

class WEXPOL_API CIcatKeyword : public records::Record<CIcatKeyword, tblIcatKeyword> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_ICAT_KEYWORD_H_
