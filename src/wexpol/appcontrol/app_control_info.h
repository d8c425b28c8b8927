// The decision at the start of a program: blocked, monitored or neither.

#ifndef WEXPOL_APPCONTROL_APP_CONTROL_INFO_H_
#define WEXPOL_APPCONTROL_APP_CONTROL_INFO_H_

#include <cstdint>
#include <memory>

#include "wexpol/platform/export.h"

struct sqlite3;
struct sqlite3_stmt;

namespace wexpol {
class ReadScope;
}

enum CONTROL_FLAG : int {
  CONTROL_FLAG_NONE = 0,
  CONTROL_FLAG_BLOCK = 1,    // The program is in a rule set of the policy that is on.
  CONTROL_FLAG_MONITOR = 2,  // The program is known and of app type 1.
};

namespace wexpol {

// A text that its copies share; the last of them frees it.
class WEXPOL_API SharedText {
 public:
  operator const wchar_t*() const noexcept { return chars_.get(); }
  const wchar_t* get() const noexcept { return chars_.get(); }
  void Adopt(std::unique_ptr<wchar_t[]> chars);
  // Becomes null without freeing the text, which no copy frees any more: whoever took the pointer
  // owes it a delete[].
  void LetGo();

 private:
  std::shared_ptr<wchar_t[]> chars_;
};

}  // namespace wexpol

struct APP_CONTROL_INFO {
  std::int32_t caller_id = -1;           // The caller's own.
  std::int32_t login_id = -1;            // Set by the caller: the user who is signed in.
  std::int32_t policy_id = -1;           // The policy of the login.
  std::int32_t app_control_id = -1;      // The rule set; 0 for a program that is monitored.
  std::int32_t app_control_app_id = -1;  // The row of the rule set; 0 for one that is monitored.
  std::int16_t app_id = -1;              // The program.
  CONTROL_FLAG control_flag = CONTROL_FLAG_NONE;
  wexpol::SharedText app_name;   // Only of a program that is monitored.
  bool policy_resolved = false;  // By CPolicyDB::IsAppControlled.
};

// One lookup object serves any number of questions. A program is told by the name of its file or by
// the digest of its content; blocking comes before monitoring, and the name before the digest. A
// program told by its name has its digest learnt, so that a copy under another name is told by
// that.
//
// A null name matches nothing, and neither does a digest that is null or shorter than one byte.
// Nothing is logged and no error is kept: what fails does not match.
class WEXPOL_API CAppControlInfo : public APP_CONTROL_INFO {
 public:
  // With `freeName` false the caller has taken `app_name`, to delete[] it.
  void Reset(bool freeName);
  CAppControlInfo& operator=(const APP_CONTROL_INFO& other);

  // Under `policy_id`. True for a program that is blocked or, with `alsoMonitor`, monitored.
  bool IsAppControlled(sqlite3* db, const char* fileName, const unsigned char* md5, int md5Length,
                       bool alsoMonitor);
  bool IsAppMonitored(sqlite3* db, const char* fileName, const unsigned char* md5, int md5Length);

  // Makes a digest known that belongs to no program: app 0. True also when it was known.
  static bool AddAppChecksumToDB(sqlite3* db, const unsigned char* md5, int md5Length,
                                 CONTROL_FLAG flag);

  // Takes a row of a lookup: rule set, its row, program, flag. NULL leaves a field.
  void CopyFromDB(sqlite3_stmt* lookup);

 protected:
  friend class CPolicyDB;

  // IsAppControlled within a read, which is released before a digest is learnt.
  bool Decide(wexpol::ReadScope& read, sqlite3* db, const char* fileName, const unsigned char* md5,
              int md5Length, bool alsoMonitor);

  // The steps.
  bool LookupFile(sqlite3* db, const char* fileName) const;
  bool LookupChecksum(sqlite3* db, const unsigned char* md5, int md5Length) const;
  bool DoesChecksumExist(sqlite3* db, const unsigned char* md5, int md5Length) const {
    return LookupChecksum(db, md5, md5Length);
  }
  bool IsAppBlocked(sqlite3* db, const char* fileName);
  bool IsAppBlocked(sqlite3* db, const unsigned char* md5, int md5Length);
  bool IsAppMonitored(sqlite3* db, const char* fileName);
  bool IsAppMonitored(sqlite3* db, const unsigned char* md5, int md5Length);
  // The name of `app_id` into `app_name`; an empty one is none. False when there is no such
  // program.
  bool GetAppName(sqlite3* db);
  // Makes the digest known under what was found, after the end of the read. Never waits on the
  // connection of a session.
  void Learn(wexpol::ReadScope& read, sqlite3* db, const unsigned char* md5, int md5Length) const;
  bool InsertChecksum(sqlite3* db, const unsigned char* md5, int md5Length) const;
  // Adds the digest for `app_id` and `control_flag`. True also when it was known, whatever for.
  bool AddAppChecksumToDB(sqlite3* db, const unsigned char* md5, int md5Length) const;
};

#endif  // WEXPOL_APPCONTROL_APP_CONTROL_INFO_H_
