// The device groups of the account: table "device_groups".

#ifndef IDENTITY_DEVICE_GROUP_H_
#define IDENTITY_DEVICE_GROUP_H_

#include <cstdint>

#include "records/record.h"

struct tblDeviceGroup {
  std::int32_t id = -1;
  std::int32_t account_id = -1;
  records::WideText name;        // As shown to the user.
  std::int16_t is_default = -1;  // 1, 0, or -1 while unknown.
};

class WEXPOL_API CDeviceGroup : public records::Record<CDeviceGroup, tblDeviceGroup> {
 public:
  static const records::Table& Table();
};

#endif  // IDENTITY_DEVICE_GROUP_H_
