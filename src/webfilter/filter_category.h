// What is done with a category: table "filter_categories".

#ifndef WEBFILTER_FILTER_CATEGORY_H_
#define WEBFILTER_FILTER_CATEGORY_H_

#include <cstdint>

#include "records/record.h"

struct tblFilterCategory {
  std::int32_t id = -1;
  std::int16_t category_id = -1;
  std::int32_t filter_setting_id = -1;
  std::int16_t filter_action_id = -1;
};

class WEXPOL_API CFilterCategory : public records::Record<CFilterCategory, tblFilterCategory> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_FILTER_CATEGORY_H_
