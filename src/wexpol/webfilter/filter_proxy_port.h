// The proxy ports that a setting filters: table "filter_proxy_ports".

#ifndef WEXPOL_WEBFILTER_FILTER_PROXY_PORT_H_
#define WEXPOL_WEBFILTER_FILTER_PROXY_PORT_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblFilterProxyPort {
  std::int32_t id = -1;
  std::int32_t filter_setting_id = -1;  // Row of "filter_settings".
  std::int32_t port = -1;
  wexpol::Text description;
};

// A port on which one filter setting expects a proxy.
class WEXPOL_API CFilterProxyPort : public wexpol::Record<CFilterProxyPort, tblFilterProxyPort> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_FILTER_PROXY_PORT_H_
