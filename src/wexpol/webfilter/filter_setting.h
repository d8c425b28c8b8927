// The web filter settings of the policy services: table "filter_settings".

#ifndef WEXPOL_WEBFILTER_FILTER_SETTING_H_
#define WEXPOL_WEBFILTER_FILTER_SETTING_H_

#include <array>
#include <cstdint>

#include "wexpol/records/record.h"

struct tblFilterSetting {
  std::int32_t id = -1;
  std::int32_t policy_service_id = -1;  // Row of "policy_services".
  bool password_override = false;
  bool block_uncategorized = false;
  bool allow_list_only = false;
  bool image_filter = false;
  bool allow_from_referral = false;
  std::int16_t safety_lock = -1;
  bool force_safe_search = false;
  std::array<std::uint8_t, 84> schedule = {};  // The console's bits; zeros while unknown.
  bool icat = false;
};

// How the web filter works under one policy service.
//
// A "schedule" that is a text must be exactly 168 hexadecimal digits; a missing one, null or any
// other value leaves zeros.
class WEXPOL_API CFilterSetting : public wexpol::Record<CFilterSetting, tblFilterSetting> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_FILTER_SETTING_H_
