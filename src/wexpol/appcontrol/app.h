// The programs that the console knows: table "apps".

#ifndef WEXPOL_APPCONTROL_APP_H_
#define WEXPOL_APPCONTROL_APP_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblApp {
  std::int16_t id = -1;           // Named "app_id" elsewhere.
  std::int16_t app_type_id = -1;  // Only type 1 is monitored.
  wexpol::Text name;              // As shown to the user.
};

// A program, whatever the names and contents of its files; "app_files" and "app_checksums" say how
// it is told.
class WEXPOL_API CApp : public wexpol::Record<CApp, tblApp> {
 public:
  static const wexpol::Table& Table();

  // False, and nothing changed, when there is no such program.
  bool SpecialGet(sqlite3* db, long app_id);
};

#endif  // WEXPOL_APPCONTROL_APP_H_
