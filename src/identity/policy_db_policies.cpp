// The facade's operations over policies, their passwords, and the attempts to enter one.

#include "identity/auth_log.h"
#include "identity/device.h"
#include "identity/local_device.h"
#include "identity/login.h"
#include "identity/policy.h"
#include "policydb/facade.h"

bool CPolicyDB::ClearAndAddPolicies(const char* json) { return ClearAndAdd<CPolicy>(json); }
bool CPolicyDB::GetPolicy(CPolicy& policy, long id) { return ReadByKey(policy, id); }

long CPolicyDB::GetPolicyId(const wchar_t* loginName) {
  return policydb::Ask(-1L, [&]() -> long {
    const records::ReadScope scope(handle());
    long device_id;
    if (!identity::GetLocalDeviceId(handle(), device_id) || device_id < 1) return -1;
    CLogin login;
    if (login.GetLogin(handle(), device_id, loginName)) return login.policy_id;
    // Read in the order of the rows, not in that of an index over the ids.
    return records::QueryInt(handle(), "SELECT id FROM policies NOT INDEXED").value_or(-1);
  });
}

long CPolicyDB::GetPolicyIdFromDeviceId() {
  return policydb::Ask(-1L, [&]() -> long {
    CDevice device;
    return identity::GetLocalDevice(handle(), device) ? device.policy_id : -1;
  });
}

PASSWORD_VALIDATION_RESULT CPolicyDB::IsValidPassword(const wchar_t* password, int unused,
                                                      long policyId, short type) {
  return policydb::Ask(PASSWORD_DB_ERROR, [&] {
    return CPolicy::IsValidPassword(password, unused, policyId, handle(), type);
  });
}

bool CPolicyDB::SetAuthLog(bool success, std::uint64_t tableId, const SYSTEMTIME* time) {
  return policydb::Ask([&] { return CAuthLog().UpdateAuthLog(handle(), success, tableId, time); });
}

bool CPolicyDB::GetAuthLog(CAuthLog& log, std::uint64_t tableId) {
  return policydb::Ask([&] { return log.GetRecord(handle(), tableId, m_error); });
}
