#include "wexpol/webfilter/swg_settings.h"

#include <cstddef>

#include "wexpol/platform/text.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblSwgSettings::username>("username"),
    Column<&tblSwgSettings::password>("password"),
    Column<&tblSwgSettings::server>("server"),
    Column<&tblSwgSettings::primary_internal_ipv4_dns>("primary_internal_ipv4_dns"),
    Column<&tblSwgSettings::secondary_internal_ipv4_dns>("secondary_internal_ipv4_dns"),
    Column<&tblSwgSettings::primary_internal_ipv6_dns>("primary_internal_ipv6_dns"),
    Column<&tblSwgSettings::secondary_internal_ipv6_dns>("secondary_internal_ipv6_dns"),
    Column<&tblSwgSettings::shift_policy_id>("shift_policy_id"),
    Column<&tblSwgSettings::split_dns_enabled>("split_dns_enabled"),
    Column<&tblSwgSettings::split_dns_domains>("split_dns_domains"),
};

constexpr std::size_t kMaxServerCharacters = 256;

}  // namespace

const wexpol::Table& CSwgSettings::Table() {
  static const wexpol::Table& table = *new wexpol::Table("swg_settings", "swg_setting", kColumns);
  return table;
}

bool CSwgSettings::IsValid() const { return username && password && server; }

void CSwgSettings::CopyServerIp(std::wstring& out, const char* server) {
  if (server) out = wexpol::Utf8ToWide(server).substr(0, kMaxServerCharacters);
}

void CSwgSettings::GetPreferredInternalDnsServers(std::wstring& ipv4, std::wstring& ipv6) const {
  CopyServerIp(ipv4,
               primary_internal_ipv4_dns ? primary_internal_ipv4_dns : secondary_internal_ipv4_dns);
  CopyServerIp(ipv6,
               primary_internal_ipv6_dns ? primary_internal_ipv6_dns : secondary_internal_ipv6_dns);
}
