// The C interface: this device, its credential, policies and passwords.

#include "wexpol/c_api/session.h"
#include "wexpol/platform/text.h"

int32_t wexpol_this_device(wexpol_session* session, char** json) {
  return wexpol::AskSession(session, int32_t{-1}, json, [&](CPolicyDB& db) {
    long id = -1;
    db.GetThisDeviceId(id);
    CDevice device;
    if (json && db.GetThisDevice(device)) {
      std::string record;
      device.GenerateJson(record);
      wexpol::HandOver(record, json);
    }
    return id;
  });
}

int wexpol_credential(wexpol_session* session, int fail_if_disabled, int allow_invite,
                      char** header) {
  return wexpol::AskSession(session, 0, header, [&](CPolicyDB& db) {
    CAuthInfo info;
    std::wstring line;
    db.GetAuthInfo(info, fail_if_disabled != 0, -1, allow_invite != 0);
    const bool known = info.BuildHttpHeader(line);
    wexpol::HandOver(wexpol::WideToUtf8(line), header);
    return known;
  });
}

int32_t wexpol_policy_of_login(wexpol_session* session, const char* login) {
  return wexpol::AskSession(session, int32_t{-1}, nullptr, [&](CPolicyDB& db) {
    return login ? db.GetPolicyId(wexpol::Utf8ToWide(login).c_str()) : -1;
  });
}

int wexpol_check_password(wexpol_session* session, int32_t policy, int kind, const char* password) {
  if (!password) return WEXPOL_PASSWORD_INVALID;
  return wexpol::AskSession(session, int{WEXPOL_PASSWORD_DB_ERROR}, nullptr, [&](CPolicyDB& db) {
    return db.IsValidPassword(
        wexpol::Utf8ToWide(password).c_str(), 0, policy,
        kind == WEXPOL_PASSWORD_OVERRIDE ? PASSWORD_TYPE_OVERRIDE : PASSWORD_TYPE_UNINSTALL);
  });
}
