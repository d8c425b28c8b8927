// What is done with a category: table "filter_categories".

#ifndef WEXPOL_WEBFILTER_FILTER_CATEGORY_H_
#define WEXPOL_WEBFILTER_FILTER_CATEGORY_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblFilterCategory {
  std::int32_t id = -1;
  std::int16_t category_id = -1;
  std::int32_t filter_setting_id = -1;
  std::int16_t filter_action_id = -1;
};

class WEXPOL_API CFilterCategory : public wexpol::Record<CFilterCategory, tblFilterCategory> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_FILTER_CATEGORY_H_
