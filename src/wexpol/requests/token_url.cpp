#include "wexpol/requests/token_url.h"

#include "wexpol/identity/local_device.h"

namespace wexpol {

bool AppendLocalDeviceToken(sqlite3* db, std::string& url) {
  return AskLocalDevice(db, false, [&](long device_id) {
    std::string token;
    if (!CDevice::GetToken(token, db, device_id)) return false;
    url += "?dt=" + token;
    return true;
  });
}

}  // namespace wexpol
