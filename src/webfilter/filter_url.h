// The addresses that are allowed or blocked by name: table "filter_urls".

#ifndef WEBFILTER_FILTER_URL_H_
#define WEBFILTER_FILTER_URL_H_

#include <cstdint>

#include "records/record.h"

struct tblFilterUrl {
  std::int32_t id = -1;  // Given by the database when -1.
  std::int32_t filter_setting_id = -1;
  records::Text url;
  bool allowed = true;
};

class WEXPOL_API CFilterUrl : public records::Record<CFilterUrl, tblFilterUrl> {
 public:
  CFilterUrl() = default;
  // A rule that is ready to be added; the text is copied.
  CFilterUrl(long filterSettingId, const char* ruleUrl, bool isAllowed);

  static const records::Table& Table();
};

#endif  // WEBFILTER_FILTER_URL_H_
