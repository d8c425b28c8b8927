// The facade's operations over policies, their passwords, and the attempts to enter one.

#include "wexpol/identity/auth_log.h"
#include "wexpol/identity/device.h"
#include "wexpol/identity/local_device.h"
#include "wexpol/identity/login.h"
#include "wexpol/identity/policy.h"
#include "wexpol/policydb/facade.h"

bool CPolicyDB::ClearAndAddPolicies(const char* json) { return ClearAndAdd<CPolicy>(json); }
bool CPolicyDB::GetPolicy(CPolicy& policy, long id) { return ReadByKey(policy, id); }

long CPolicyDB::GetPolicyId(const wchar_t* loginName) {
  return wexpol::Ask(-1L, [&]() -> long {
    const wexpol::ReadScope scope(handle());
    long device_id;
    if (!wexpol::GetLocalDeviceId(handle(), device_id) || device_id < 1) return -1;
    CLogin login;
    if (login.GetLogin(handle(), device_id, loginName)) return login.policy_id;
    // Read in the order of the rows, not in that of an index over the ids.
    return wexpol::QueryInt(handle(), "SELECT id FROM policies NOT INDEXED").value_or(-1);
  });
}

long CPolicyDB::GetPolicyIdFromDeviceId() {
  return wexpol::Ask(-1L, [&]() -> long {
    CDevice device;
    return wexpol::GetLocalDevice(handle(), device) ? device.policy_id : -1;
  });
}

PASSWORD_VALIDATION_RESULT CPolicyDB::IsValidPassword(const wchar_t* password, int unused,
                                                      long policyId, short type) {
  return wexpol::Ask(PASSWORD_DB_ERROR, [&] {
    return CPolicy::IsValidPassword(password, unused, policyId, handle(), type);
  });
}

bool CPolicyDB::SetAuthLog(bool success, std::uint64_t tableId, const SYSTEMTIME* time) {
  return wexpol::Ask([&] { return CAuthLog().UpdateAuthLog(handle(), success, tableId, time); });
}

bool CPolicyDB::GetAuthLog(CAuthLog& log, std::uint64_t tableId) {
  return wexpol::Ask([&] { return log.GetRecord(handle(), tableId, m_error); });
}
