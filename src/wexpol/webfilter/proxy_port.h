// The proxy ports that are known everywhere: table "proxy_ports".

#ifndef WEXPOL_WEBFILTER_PROXY_PORT_H_
#define WEXPOL_WEBFILTER_PROXY_PORT_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblProxyPort {
  std::int32_t id = -1;
  std::int32_t port = -1;
  wexpol::Text description;
};

// A port on which a proxy may be found.
//
// Add2DB never adds a row and answers the engine's code for a statement that it refuses.
class WEXPOL_API CProxyPort : public wexpol::Record<CProxyPort, tblProxyPort> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_WEBFILTER_PROXY_PORT_H_
