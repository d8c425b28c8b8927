// The device groups of the account: table "device_groups".

#ifndef WEXPOL_IDENTITY_DEVICE_GROUP_H_
#define WEXPOL_IDENTITY_DEVICE_GROUP_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblDeviceGroup {
  std::int32_t id = -1;
  std::int32_t account_id = -1;  // Row of "accounts".
  wexpol::WideText name;         // As shown to the user.
  std::int16_t is_default = -1;  // 1, 0, or -1 while unknown.
};

// A group into which the console sorts devices.
class WEXPOL_API CDeviceGroup : public wexpol::Record<CDeviceGroup, tblDeviceGroup> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_IDENTITY_DEVICE_GROUP_H_
