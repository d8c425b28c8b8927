// The credentials of a request to the console.

#ifndef WEXPOL_REQUESTS_AUTH_INFO_H_
#define WEXPOL_REQUESTS_AUTH_INFO_H_

#include <cstdint>
#include <string>

#include "wexpol/platform/export.h"
#include "wexpol/records/text.h"

struct sqlite3;

// Account, local device, address of the console's interface, and a token with the name of the
// header line that carries it.
class WEXPOL_API CAuthInfo {
 public:
  CAuthInfo() = default;
  CAuthInfo(const CAuthInfo&) = delete;
  CAuthInfo& operator=(const CAuthInfo&) = delete;

  // Everything but the two ids, which keep their values.
  void Reset();

  // Fills the object; true when a header name and a token were found. An id below 1 means the local
  // device. A disabled account can be made to fail; an account that cannot be read fails always. A
  // device without a token, or with an empty one, can fall back to the token of the invitation that
  // it was installed from. A read that meets a table which is just being rewritten is tried again.
  // Nothing of a token remains after false.
  bool Read(sqlite3* db, bool fail_if_disabled, long of_device, bool allow_invite_token);

  // Takes the stored device id, else that of the first device with a token, which is then stored.
  // False when there is no such device.
  bool GetDeviceId(sqlite3* db);

  // Replaces `out` with the line "name: token". False, and the line of an unknown agent, which is
  // to be sent all the same, when there is no token.
  bool BuildHttpHeader(std::wstring& out);

  // Takes the address in the system's code page; null for null.
  void ConvertAuthUrlToWide(const char* text);

  std::int32_t account_id = -1;
  std::int32_t device_id = -1;
  const wchar_t* header_name = nullptr;  // A constant text.
  wexpol::WideText token;
  wexpol::WideText policy_api_url;
  bool account_disabled = false;

 private:
  bool ReadAccount(sqlite3* db);
  bool TakeUrl(sqlite3* db);
  bool TakeDeviceToken(sqlite3* db);
  bool TakeInviteToken(sqlite3* db);
  // Takes over `found`, with the name of its header line; drops both when it cannot be sent.
  bool TakeToken(const wchar_t* name, wchar_t* found);
};

#endif  // WEXPOL_REQUESTS_AUTH_INFO_H_
