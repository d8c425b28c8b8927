#include "wexpol/appcontrol/app_control_info.h"

#include <cstddef>
#include <cstring>

#include "wexpol/records/codec.h"
#include "wexpol/records/no_wait.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"

namespace {

// Longer names are never monitored by name.
constexpr std::size_t kMonitoredNameBytes = 894;
constexpr int kMonitoredAppType = 1;

wexpol::Blob Digest(const unsigned char* md5, int length) {
  if (length < 1) return {nullptr, 0};
  return {md5, static_cast<std::size_t>(length)};
}

// Frees the text unless somebody took it.
struct Owner {
  bool taken = false;
  void operator()(wchar_t* chars) const {
    if (!taken) delete[] chars;
  }
};

}  // namespace

namespace wexpol {

void SharedText::Adopt(std::unique_ptr<wchar_t[]> chars) { chars_.reset(chars.release(), Owner()); }

void SharedText::LetGo() {
  if (auto* owner = std::get_deleter<Owner>(chars_)) owner->taken = true;
  chars_.reset();
}

}  // namespace wexpol

void CAppControlInfo::Reset(bool freeName) {
  if (!freeName) app_name.LetGo();
  *this = APP_CONTROL_INFO();
}

CAppControlInfo& CAppControlInfo::operator=(const APP_CONTROL_INFO& other) {
  APP_CONTROL_INFO::operator=(other);
  return *this;
}

void CAppControlInfo::CopyFromDB(sqlite3_stmt* lookup) {
  wexpol::kInt32.Copy(lookup, 0, app_control_id);
  wexpol::kInt32.Copy(lookup, 1, app_control_app_id);
  wexpol::kInt16.Copy(lookup, 2, app_id);
  std::int32_t flag = control_flag;
  wexpol::kInt32.Copy(lookup, 3, flag);
  control_flag = static_cast<CONTROL_FLAG>(flag);
}

bool CAppControlInfo::IsAppControlled(sqlite3* db, const char* fileName, const unsigned char* md5,
                                      int md5Length, bool alsoMonitor) {
  wexpol::ReadScope read(db);
  return Decide(read, db, fileName, md5, md5Length, alsoMonitor);
}

bool CAppControlInfo::Decide(wexpol::ReadScope& read, sqlite3* db, const char* fileName,
                             const unsigned char* md5, int md5Length, bool alsoMonitor) {
  control_flag = CONTROL_FLAG_NONE;
  // Within one read, a name or digest that is unknown here stays unknown in the steps below.
  const bool name_known = LookupFile(db, fileName);
  if (!name_known && !LookupChecksum(db, md5, md5Length)) return false;
  if (name_known && IsAppBlocked(db, fileName)) {
    Learn(read, db, md5, md5Length);
    return true;
  }
  if (IsAppBlocked(db, md5, md5Length)) return true;
  if (!alsoMonitor) return false;
  if (name_known && IsAppMonitored(db, fileName)) {
    Learn(read, db, md5, md5Length);
    return true;
  }
  return IsAppMonitored(db, md5, md5Length);
}

bool CAppControlInfo::IsAppMonitored(sqlite3* db, const char* fileName, const unsigned char* md5,
                                     int md5Length) {
  wexpol::ReadScope read(db);
  control_flag = CONTROL_FLAG_NONE;
  if (!IsAppMonitored(db, fileName)) return IsAppMonitored(db, md5, md5Length);
  Learn(read, db, md5, md5Length);
  return true;
}

bool CAppControlInfo::LookupFile(sqlite3* db, const char* fileName) const {
  return wexpol::QueryExists(db, "SELECT id FROM app_files WHERE name=?", fileName);
}

bool CAppControlInfo::LookupChecksum(sqlite3* db, const unsigned char* md5, int md5Length) const {
  return wexpol::QueryExists(db, "SELECT id FROM app_checksums WHERE md5=?",
                             Digest(md5, md5Length));
}

// Without a policy no rule set can match, here and below.
bool CAppControlInfo::IsAppBlocked(sqlite3* db, const char* fileName) {
  return policy_id != -1 &&
         wexpol::QueryRecord(
             *this, db,
             "SELECT app_controls.id, app_control_apps.id, apps.id, 1 FROM app_control_apps "
             "INNER JOIN apps ON apps.id=app_control_apps.app_id "
             "INNER JOIN app_files ON app_files.app_id=apps.id "
             "INNER JOIN app_controls ON app_controls.id=app_control_apps.app_control_id "
             "WHERE app_controls.enabled=1 AND app_controls.policy_id=? AND app_files.name=?",
             policy_id, fileName);
}

bool CAppControlInfo::IsAppBlocked(sqlite3* db, const unsigned char* md5, int md5Length) {
  return policy_id != -1 &&
         wexpol::QueryRecord(
             *this, db,
             "SELECT app_controls.id, app_control_apps.id, apps.id, control_flag "
             "FROM app_control_apps "
             "INNER JOIN apps ON apps.id=app_control_apps.app_id "
             "INNER JOIN app_checksums ON app_checksums.app_id=apps.id "
             "INNER JOIN app_controls ON app_controls.id=app_control_apps.app_control_id "
             "WHERE control_flag=1 AND app_controls.enabled=1 AND app_controls.policy_id=? "
             "AND app_checksums.md5=?",
             policy_id, Digest(md5, md5Length));
}

bool CAppControlInfo::IsAppMonitored(sqlite3* db, const char* fileName) {
  // A name with a quote in it is never monitored by name either.
  if (!fileName || std::strchr(fileName, '\'')) return false;
  if (std::strlen(fileName) > kMonitoredNameBytes) return false;
  const bool found = wexpol::QueryRecord(
      *this, db,
      "SELECT 0, 0, apps.id, 2 FROM app_files INNER JOIN apps ON apps.id=app_files.app_id "
      "WHERE app_files.name=? AND apps.app_type_id=?",
      fileName, kMonitoredAppType);
  if (found) GetAppName(db);
  return found;
}

bool CAppControlInfo::IsAppMonitored(sqlite3* db, const unsigned char* md5, int md5Length) {
  const bool found =
      wexpol::QueryRecord(*this, db,
                          "SELECT 0, 0, apps.id, control_flag FROM app_checksums "
                          "INNER JOIN apps ON apps.id=app_checksums.app_id "
                          "WHERE control_flag=2 AND apps.app_type_id=? AND app_checksums.md5=?",
                          kMonitoredAppType, Digest(md5, md5Length));
  if (found) GetAppName(db);
  return found;
}

bool CAppControlInfo::GetAppName(sqlite3* db) {
  wexpol::Statement select(db, "SELECT name FROM apps WHERE id=?", app_id);
  if (!select.StepRow()) return false;
  wexpol::WideText name;
  wexpol::kWideText.Copy(select.get(), 0, name);
  if (name.view().empty()) name = nullptr;
  app_name.Adopt(std::unique_ptr<wchar_t[]>(name.release()));
  return true;
}

void CAppControlInfo::Learn(wexpol::ReadScope& read, sqlite3* db, const unsigned char* md5,
                            int md5Length) const {
  if (LookupChecksum(db, md5, md5Length)) return;
  read.Release();
  // The program's start waits for the answer, which does not depend on this: when another process
  // is writing, the digest is learnt at a later start.
  const wexpol::NoWait no_wait(db);
  InsertChecksum(db, md5, md5Length);
}

bool CAppControlInfo::AddAppChecksumToDB(sqlite3* db, const unsigned char* md5,
                                         int md5Length) const {
  return LookupChecksum(db, md5, md5Length) || InsertChecksum(db, md5, md5Length);
}

bool CAppControlInfo::InsertChecksum(sqlite3* db, const unsigned char* md5, int md5Length) const {
  // Looks again where it writes: another process may have learnt the digest since.
  wexpol::Statement insert(db,
                           "INSERT INTO app_checksums(app_id, md5, control_flag) SELECT ?1,?2,?3 "
                           "WHERE NOT EXISTS(SELECT 1 FROM app_checksums WHERE md5=?2)");
  if (!insert.ok()) return false;
  wexpol::kInt16.Bind(app_id, insert, 1);
  insert.Bind(2, Digest(md5, md5Length));
  const std::int32_t flag = control_flag;
  wexpol::kInt32.Bind(flag, insert, 3);
  return insert.StepDone();
}

bool CAppControlInfo::AddAppChecksumToDB(sqlite3* db, const unsigned char* md5, int md5Length,
                                         CONTROL_FLAG flag) {
  CAppControlInfo info;
  info.app_id = 0;
  info.control_flag = flag;
  return info.AddAppChecksumToDB(db, md5, md5Length);
}
