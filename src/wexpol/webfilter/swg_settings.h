// The connection to the secure web gateway: table "swg_settings".

#ifndef WEXPOL_WEBFILTER_SWG_SETTINGS_H_
#define WEXPOL_WEBFILTER_SWG_SETTINGS_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblSwgSettings {
  wexpol::Text username;  // This and the next: the account at the gateway.
  wexpol::Text password;  // As the console sends it.
  wexpol::Text server;
  wexpol::Text primary_internal_ipv4_dns;  // Addresses of name servers, as texts.
  wexpol::Text secondary_internal_ipv4_dns;
  wexpol::Text primary_internal_ipv6_dns;
  wexpol::Text secondary_internal_ipv6_dns;
  std::int32_t shift_policy_id = -1;
  bool split_dns_enabled = false;
  wexpol::Text split_dns_domains;
};

// How this device reaches the secure web gateway. The table has one row and no key: DelFromDB
// empties it and UpdateDB writes every row.
class WEXPOL_API CSwgSettings : public wexpol::Record<CSwgSettings, tblSwgSettings> {
 public:
  static const wexpol::Table& Table();

  // Whether there are a user name, a password and a server.
  bool IsValid() const;
  // The text as wide text, its first 256 characters at most; a null one leaves `out`.
  static void CopyServerIp(std::wstring& out, const char* server);
  // The primary server of each pair, else the secondary; without either the text is left alone.
  void GetPreferredInternalDnsServers(std::wstring& ipv4, std::wstring& ipv6) const;
};

#endif  // WEXPOL_WEBFILTER_SWG_SETTINGS_H_
