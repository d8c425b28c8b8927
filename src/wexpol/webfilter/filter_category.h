// What is done with a category: table "filter_categories".

#ifndef WEXPOL_WEBFILTER_FILTER_CATEGORY_H_
#define WEXPOL_WEBFILTER_FILTER_CATEGORY_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblFilterCategory {
  std::int32_t id = -1;
  std::int16_t category_id = -1;        // Row of "categories".
  std::int32_t filter_setting_id = -1;  // Row of "filter_settings".
  std::int16_t filter_action_id = -1;   // What to do, as the console numbers it.
};

// The action of one filter setting for one category. Only kept here; the filter acts on it.
class WEXPOL_API CFilterCategory : public wexpol::Record<CFilterCategory, tblFilterCategory> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_FILTER_CATEGORY_H_
