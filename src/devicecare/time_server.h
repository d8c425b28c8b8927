// The time servers that the console publishes: table "time_servers".

#ifndef DEVICECARE_TIME_SERVER_H_
#define DEVICECARE_TIME_SERVER_H_

#include <cstdint>

#include "records/record.h"

struct tblTimeServer {
  std::int32_t id = -1;
  records::Text url;
  std::int64_t row_version = -1;
};

class WEXPOL_API CTimeServer : public records::Record<CTimeServer, tblTimeServer> {
 public:
  static const records::Table& Table();

  void SetUrl(const char* text) { url = text; }
};

#endif  // DEVICECARE_TIME_SERVER_H_
