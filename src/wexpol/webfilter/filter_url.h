// The addresses that are allowed or blocked by name: table "filter_urls".

#ifndef WEXPOL_WEBFILTER_FILTER_URL_H_
#define WEXPOL_WEBFILTER_FILTER_URL_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblFilterUrl {
  std::int32_t id = -1;                 // Given by the database when -1.
  std::int32_t filter_setting_id = -1;  // Row of "filter_settings".
  wexpol::Text url;
  bool allowed = true;  // False is blocked.
};

// A rule of one filter setting for one address. No key is required in a document.
class WEXPOL_API CFilterUrl : public wexpol::Record<CFilterUrl, tblFilterUrl> {
 public:
  CFilterUrl() = default;
  // A rule that is ready to be added; the text is copied.
  CFilterUrl(long filterSettingId, const char* ruleUrl, bool isAllowed);

  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_FILTER_URL_H_
