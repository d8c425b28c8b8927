// The Windows logins seen on the devices: table "logins".

#ifndef WEXPOL_IDENTITY_LOGIN_H_
#define WEXPOL_IDENTITY_LOGIN_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblLogin {
  std::int32_t id = -1;
  std::int32_t device_id = -1;  // Row of "devices".
  wexpol::WideText name;        // Of the user.
  std::int32_t policy_id = -1;  // Overrides the policy of the device.
  wexpol::WideText description;
  wexpol::WideText comment;
  std::int16_t is_admin = 1;  // A login of which nothing is said counts as an administrator.
};

// A user of a device.
class WEXPOL_API CLogin : public wexpol::Record<CLogin, tblLogin> {
 public:
  static const wexpol::Table& Table();

  // Takes the login of that name on a device; false when there is none. Names that take more than
  // 462 bytes of UTF-8 less the digits of the id are not looked for.
  bool GetLogin(sqlite3* db, long of_device, const wchar_t* login_name);
  // The policy of a login; -1 when there is none.
  static long GetPolicyId(sqlite3* db, long login_id);

  void SetName(const wchar_t* text) { name = text; }
  void SetComment(const wchar_t* text) { comment = text; }
};

#endif  // WEXPOL_IDENTITY_LOGIN_H_
