// The proxy ports that a setting filters: table "filter_proxy_ports".

#ifndef WEBFILTER_FILTER_PROXY_PORT_H_
#define WEBFILTER_FILTER_PROXY_PORT_H_

#include <cstdint>

#include "records/record.h"

struct tblFilterProxyPort {
  std::int32_t id = -1;
  std::int32_t filter_setting_id = -1;
  std::int32_t port = -1;
  records::Text description;
};

class WEXPOL_API CFilterProxyPort : public records::Record<CFilterProxyPort, tblFilterProxyPort> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_FILTER_PROXY_PORT_H_
