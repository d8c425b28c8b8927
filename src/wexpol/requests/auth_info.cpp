#include "wexpol/requests/auth_info.h"

#include <memory>
#include <optional>

#include "wexpol/devicecare/install_invite.h"
#include "wexpol/identity/account.h"
#include "wexpol/identity/device.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"
#include "wexpol/services/service_configuration.h"

namespace {

constexpr wchar_t kDeviceHeader[] = L"X-Device-Token";
constexpr wchar_t kInviteHeader[] = L"X-Invite-Token";
constexpr wchar_t kAnonymousLine[] = L"X-Api-Token: nobody";
constexpr char kUrlKey[] = "policy_api_url";
constexpr int kUrlTries = 2;
constexpr int kTokenTries = 4;
constexpr int kTryWithNewId = 3;  // The first one that asks once more which device this is.

// One consistent read of the file. Between two tries it is let go of: the next one is to see what
// another thread has written meanwhile.
class Reading {
 public:
  explicit Reading(sqlite3* db) : db_(db) { scope_.emplace(db); }

  template <typename Attempt>
  bool Try(int times, Attempt&& attempt) {
    for (int number = 1; number <= times; ++number) {
      if (number > 1) Renew();
      if (attempt(number)) return true;
    }
    return false;
  }
  void End() { scope_.reset(); }

 private:
  void Renew() {
    End();
    wexpol::SleepYield();
    scope_.emplace(db_);
  }

  sqlite3* db_;
  std::optional<wexpol::ReadScope> scope_;
};

}  // namespace

void CAuthInfo::Reset() {
  header_name = nullptr;
  token = nullptr;
  policy_api_url = nullptr;
  account_disabled = false;
}

// False when the row is not to be had; there may be none.
bool CAuthInfo::ReadAccount(sqlite3* db) {
  CAccount account;
  const int code = wexpol::FetchRecord(account, db, CAccount::Table().select());
  if (code != SQLITE_ROW) return code == SQLITE_DONE;
  account_id = account.id;
  account_disabled = account.account_status_id == ACCOUNT_STATUS_DISABLED;
  return true;
}

// A line break would let the token write header lines of its own.
bool CAuthInfo::TakeToken(const wchar_t* name, wchar_t* found) {
  token = wexpol::WideText::Adopt(std::unique_ptr<wchar_t[]>(found));
  const bool usable = token != nullptr && token.view().find_first_of(L"\r\n") == std::wstring::npos;
  header_name = usable ? name : nullptr;
  if (!usable) token = nullptr;
  return usable;
}

bool CAuthInfo::TakeDeviceToken(sqlite3* db) {
  wchar_t* found;
  CDevice::GetToken(&found, db, device_id);
  return TakeToken(kDeviceHeader, found);
}

bool CAuthInfo::TakeInviteToken(sqlite3* db) {
  wchar_t* found;
  CInstallInvite::GetToken(&found, db);
  return TakeToken(kInviteHeader, found);
}

bool CAuthInfo::TakeUrl(sqlite3* db) {
  const std::unique_ptr<char[]> url(CServiceConfiguration::GetServiceConfiguration(db, kUrlKey));
  ConvertAuthUrlToWide(url.get());
  return url != nullptr;
}

bool CAuthInfo::Read(sqlite3* db, bool fail_if_disabled, long of_device, bool allow_invite_token) {
  Reset();
  Reading reading(db);
  // Without an account the read goes on; one that cannot be read might be disabled.
  if (!ReadAccount(db) || (account_disabled && fail_if_disabled)) return false;
  if (of_device < 1) {
    GetDeviceId(db);
  } else {
    device_id = static_cast<std::int32_t>(of_device);
  }
  const bool has_url = reading.Try(kUrlTries, [&](int) { return TakeUrl(db); });
  bool found = reading.Try(kTokenTries, [&](int number) {
    if (number == kTryWithNewId) GetDeviceId(db);
    return TakeDeviceToken(db);
  });
  const bool is_empty = token.view().empty();
  if (is_empty && allow_invite_token) found = TakeInviteToken(db);
  reading.End();  // Writing a log line may wait for other processes.

  if (!has_url) wexpol::LogMessage("CServiceConfiguration::GetServiceConfiguration failed");
  wexpol::LogMessage("CDevice::GetToken DeviceId = %d", device_id);
  if (is_empty) wexpol::LogMessage("CDevice::GetToken is empty, using invite token");
  return found;
}

bool CAuthInfo::GetDeviceId(sqlite3* db) {
  long stored;
  if (CDeviceInfo::GetDeviceID(&stored)) {
    device_id = static_cast<std::int32_t>(stored);
    if (device_id >= 0) return true;
  }
  CDevice device;
  if (!device.SpecialGetFromDB(db, -1)) return false;
  device_id = device.id;
  if (device_id > 0) CDeviceInfo::WriteDeviceID(&device);
  return true;
}

bool CAuthInfo::BuildHttpHeader(std::wstring& out) {
  const bool has_token = header_name && token != nullptr;
  if (has_token) {
    out = header_name;
    out.append(L": ").append(token.view());
  } else {
    out = kAnonymousLine;
  }
  return has_token;
}

void CAuthInfo::ConvertAuthUrlToWide(const char* text) {
  policy_api_url = text ? wexpol::WideText(wexpol::SystemCodePageToWide(text)) : nullptr;
}
