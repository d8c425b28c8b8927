// The console's settings for a device or a login: table "policies".

#ifndef WEXPOL_IDENTITY_POLICY_H_
#define WEXPOL_IDENTITY_POLICY_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

enum PASSWORD_TYPE : int {
  PASSWORD_TYPE_OVERRIDE = 0,   // Unlocks protected settings.
  PASSWORD_TYPE_UNINSTALL = 1,  // As is any other value but 0.
};

enum PASSWORD_VALIDATION_RESULT : int {
  PASSWORD_VALID = 0,
  PASSWORD_INVALID = 1,
  PASSWORD_NO_POLICY = 2,  // Not to be treated as valid.
  PASSWORD_DB_ERROR = 3,
};

// Flags are 1, 0, or -1 while unknown. The values of the other numbers are the console's.
struct tblPolicy {
  std::int32_t id = -1;
  std::int32_t policy_owner_id = -1;
  wexpol::Text name;
  wexpol::Text override_password;  // Each as an MD5 text, whole or shortened, or as it is.
  std::int16_t is_default = -1;
  wexpol::Text uninstall_password;
  std::int16_t uninstall_requires_password = -1;
  std::int16_t error_log_enabled = -1;
  std::int16_t warning_log_enabled = -1;
  std::int16_t information_log_enabled = -1;
  std::int32_t proxy_mode_id = -1;
  std::int32_t proxy_type_id = -1;
  std::int32_t proxy_browser_id = -1;
  std::int16_t proxy_server_auth_enabled = -1;
  std::int32_t proxy_auth_id = -1;
  wexpol::WideText proxy_server_name;
  wexpol::WideText proxy_server_username;
  wexpol::WideText proxy_server_password;
  std::int32_t proxy_server_port = -1;
  wexpol::WideText proxy_script;  // Address of the configuration script.
  std::int16_t force_ssl = -1;
  std::int16_t analytics_enabled = -1;
  std::int16_t self_defense_enabled = -1;
  std::int16_t proxy_bypass_local = -1;
  wexpol::WideText company_id;
};

// A policy: what protects the agent, what is logged, and by which proxy the agent reaches the
// console.
class WEXPOL_API CPolicy : public wexpol::Record<CPolicy, tblPolicy> {
 public:
  static const wexpol::Table& Table();

  // Takes the first policy, whether it is the default one or not; false when there is none.
  bool GetDefaultPolicy(sqlite3* db);

  // Whether `password` is the one of that type (a PASSWORD_TYPE) in the policy. A policy without a
  // password accepts none. The int is not used.
  static PASSWORD_VALIDATION_RESULT IsValidPassword(const wchar_t* password, int, long policy_id,
                                                    sqlite3* db, short type);

  void SetProxyServerName(const wchar_t* text) { proxy_server_name = text; }
  void SetProxyServerUsername(const wchar_t* text) { proxy_server_username = text; }
  void SetProxyServerPassword(const wchar_t* text) { proxy_server_password = text; }
  void SetProxyScript(const wchar_t* text) { proxy_script = text; }

  // Decrypts a password that the console encrypted; one that cannot be decrypted leaves the field.
  // Whether a password is set afterwards.
  bool SetProxyServerPasswordEncrypted(const wchar_t* cipher_text, std::wstring key);

  // Whether the text is not that of the field; no text and an empty one are different.
  bool IsProxyServerNameDifferent(const wchar_t* text) const;
  bool IsProxyServerUsernameDifferent(const wchar_t* text) const;
  bool IsProxyServerPasswordDifferent(const wchar_t* text) const;
  bool IsProxyScriptDifferent(const wchar_t* text) const;

  // As UTF-8; empty where there is no text.
  std::string GetProxyServerName() const;
  std::string GetProxyServerUsername() const;
  std::string GetProxyServerPassword() const;
  std::string GetProxyScript() const;
};

#endif  // WEXPOL_IDENTITY_POLICY_H_
