// The part of the device id store that knows what a device is.

#include "wexpol/platform/device_info.h"

#include "wexpol/identity/device.h"

bool CDeviceInfo::WriteDeviceID(const CDevice* device) {
  return device && WriteDeviceID(static_cast<long>(device->id));
}
