// The facade's operations that authenticate requests to the console.

#include "wexpol/policydb/facade.h"
#include "wexpol/requests/auth_info.h"
#include "wexpol/requests/token_url.h"

bool CPolicyDB::GetAuthInfo(CAuthInfo& info, bool failIfDisabled, long deviceId,
                            bool allowInviteToken) {
  return wexpol::Ask(
      [&] { return info.Read(handle(), failIfDisabled, deviceId, allowInviteToken); });
}

bool CPolicyDB::AddUserInfoToUrl(std::string& url) {
  return wexpol::Ask([&] { return wexpol::AppendLocalDeviceToken(handle(), url); });
}
