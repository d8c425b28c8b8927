// The machine's store of the id that the console gave this device.

#ifndef WEXPOL_PLATFORM_DEVICE_INFO_H_
#define WEXPOL_PLATFORM_DEVICE_INFO_H_

#include "wexpol/platform/export.h"

class CDevice;

class WEXPOL_API CDeviceInfo {
 public:
  // False, and `id` untouched, when none is stored.
  static bool GetDeviceID(long* id);
  static bool WriteDeviceID(long id);
  // Stores the id of `device`.
  static bool WriteDeviceID(const CDevice* device);
};

#endif  // WEXPOL_PLATFORM_DEVICE_INFO_H_
