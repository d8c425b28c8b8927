// The facade's operations over application control.

#include "wexpol/appcontrol/app.h"
#include "wexpol/appcontrol/app_control.h"
#include "wexpol/appcontrol/app_control_app.h"
#include "wexpol/appcontrol/app_control_info.h"
#include "wexpol/appcontrol/app_file.h"
#include "wexpol/identity/login.h"
#include "wexpol/policydb/facade.h"

bool CPolicyDB::ClearAndAddApps(const char* json) { return ClearAndAdd<CApp>(json); }
bool CPolicyDB::GetApp(CApp& out, long id) { return ReadByKey(out, id); }
bool CPolicyDB::GetApps(std::list<CApp*>& out, short appTypeId) {
  return List(out, "app_type_id", appTypeId);
}

bool CPolicyDB::ClearAndAddAppFiles(const char* json) { return ClearAndAdd<CAppFile>(json); }

bool CPolicyDB::AddAppControls(const char* json) { return Add<CAppControl>(json); }
bool CPolicyDB::ClearAppControls() { return Clear<CAppControl>(); }
bool CPolicyDB::GetAppControls(std::list<CAppControl*>& out, const char* column, long value) {
  return List(out, column, value);
}

bool CPolicyDB::AddAppControlApps(const char* json) { return Add<CAppControlApp>(json); }
bool CPolicyDB::ClearAppControlApps() { return Clear<CAppControlApp>(); }
bool CPolicyDB::GetAppControlApps(std::list<CAppControlApp*>& out, const char* column, long value) {
  return List(out, column, value);
}
bool CPolicyDB::DeleteAppControlAppFromDB(long id) {
  return wexpol::Ask(
      [&] { return wexpol::DeleteById<CAppControlApp>(handle(), static_cast<std::int32_t>(id)); });
}

// The policy is part of the same read as the decision under it.
bool CPolicyDB::IsAppControlled(CAppControlInfo& info, const char* fileName,
                                const unsigned char* md5, int md5Length) {
  return wexpol::Ask([&] {
    wexpol::ReadScope read(handle());
    info.policy_id = static_cast<std::int32_t>(CLogin::GetPolicyId(handle(), info.login_id));
    info.policy_resolved = true;
    return info.Decide(read, handle(), fileName, md5, md5Length, true);
  });
}

bool CPolicyDB::IsAppMonitored(CAppControlInfo& info, const char* fileName,
                               const unsigned char* md5, int md5Length) {
  return wexpol::Ask([&] {
    return info.policy_resolved && info.IsAppMonitored(handle(), fileName, md5, md5Length);
  });
}

bool CPolicyDB::AddAppChecksumToDB(const unsigned char* md5, int md5Length, short flag) {
  return wexpol::Ask([&] {
    return CAppControlInfo::AddAppChecksumToDB(handle(), md5, md5Length,
                                               static_cast<CONTROL_FLAG>(flag));
  });
}
