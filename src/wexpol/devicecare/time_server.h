// The time servers that the console publishes: table "time_servers".

#ifndef WEXPOL_DEVICECARE_TIME_SERVER_H_
#define WEXPOL_DEVICECARE_TIME_SERVER_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblTimeServer {
  std::int32_t id = -1;
  wexpol::Text url;
  std::int64_t row_version = -1;  // Reported to the console; see CGlobalTables.
};

// A server that tells the time. The same for all customers.
class WEXPOL_API CTimeServer : public wexpol::Record<CTimeServer, tblTimeServer> {
 public:
  static const wexpol::Table& Table();

  void SetUrl(const char* text) { url = text; }
};

#endif  // WEXPOL_DEVICECARE_TIME_SERVER_H_
