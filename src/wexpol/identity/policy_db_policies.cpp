// The facade's operations over policies, their passwords, and the attempts to enter one.

#include "wexpol/identity/auth_log.h"
#include "wexpol/identity/policy.h"
#include "wexpol/policydb/facade.h"

bool CPolicyDB::ClearAndAddPolicies(const char* json) { return ClearAndAdd<CPolicy>(json); }
bool CPolicyDB::GetPolicy(CPolicy& policy, long id) { return ReadByKey(policy, id); }

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
  return wexpol::AskAndTell(m_error, [&] { return log.GetRecord(handle(), tableId, m_error); });
}
