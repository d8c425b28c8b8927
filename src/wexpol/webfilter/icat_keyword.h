// The keywords that tell the content of a page: table "icat_keywords".

#ifndef WEXPOL_WEBFILTER_ICAT_KEYWORD_H_
#define WEXPOL_WEBFILTER_ICAT_KEYWORD_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblIcatKeyword {
  std::int32_t id = -1;
  wexpol::Text word;
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// A keyword by which the filter tells what a page is about. The same for all customers.
class WEXPOL_API CIcatKeyword : public wexpol::Record<CIcatKeyword, tblIcatKeyword> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_ICAT_KEYWORD_H_
