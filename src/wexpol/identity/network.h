// The public networks of the account: table "networks".

#ifndef WEXPOL_IDENTITY_NETWORK_H_
#define WEXPOL_IDENTITY_NETWORK_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblNetwork {
  std::int32_t id = -1;
  std::int32_t account_id = -1;  // Row of "accounts".
  wexpol::Text wan_ip;           // The public address.
};

// A network of the account, by the address that the world sees. Only kept here.
class WEXPOL_API CNetwork : public wexpol::Record<CNetwork, tblNetwork> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_IDENTITY_NETWORK_H_
