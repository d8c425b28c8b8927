// The proxy ports that are known everywhere: table "proxy_ports".

#ifndef WEBFILTER_PROXY_PORT_H_
#define WEBFILTER_PROXY_PORT_H_

#include <cstdint>

#include "records/record.h"

struct tblProxyPort {
  std::int32_t id = -1;
  std::int32_t port = -1;
  records::Text description;
};

// Add2DB never adds a row and answers the engine's code for a statement that it refuses.
class WEXPOL_API CProxyPort : public records::Record<CProxyPort, tblProxyPort> {
 public:
  static const records::Table& Table();
};

#endif  // WEBFILTER_PROXY_PORT_H_
