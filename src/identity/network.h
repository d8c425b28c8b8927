// The public networks of the account: table "networks".

#ifndef IDENTITY_NETWORK_H_
#define IDENTITY_NETWORK_H_

#include <cstdint>

#include "records/record.h"

struct tblNetwork {
  std::int32_t id = -1;
  std::int32_t account_id = -1;
  records::Text wan_ip;  // The public address.
};

class WEXPOL_API CNetwork : public records::Record<CNetwork, tblNetwork> {
 public:
  static const records::Table& Table();
};

#endif  // IDENTITY_NETWORK_H_
