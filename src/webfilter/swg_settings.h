// The connection to the secure web gateway: table "swg_settings".

#ifndef WEBFILTER_SWG_SETTINGS_H_
#define WEBFILTER_SWG_SETTINGS_H_

#include <cstdint>
#include <string>

#include "records/record.h"

struct tblSwgSettings {
  records::Text username;
  records::Text password;  // As the console sends it.
  records::Text server;
  records::Text primary_internal_ipv4_dns;
  records::Text secondary_internal_ipv4_dns;
  records::Text primary_internal_ipv6_dns;
  records::Text secondary_internal_ipv6_dns;
  std::int32_t shift_policy_id = -1;
  bool split_dns_enabled = false;
  records::Text split_dns_domains;
};

class WEXPOL_API CSwgSettings : public records::Record<CSwgSettings, tblSwgSettings> {
 public:
  static const records::Table& Table();

  // Whether there are a user name, a password and a server.
  bool IsValid() const;
  // The text as wide text, its first 256 characters at most; a null one leaves `out`.
  static void CopyServerIp(std::wstring& out, const char* server);
  // The primary server of each pair, else the secondary; without either the text is left alone.
  void GetPreferredInternalDnsServers(std::wstring& ipv4, std::wstring& ipv6) const;
};

#endif  // WEBFILTER_SWG_SETTINGS_H_
