// The file names that tell a program: table "app_files".

#ifndef WEXPOL_APPCONTROL_APP_FILE_H_
#define WEXPOL_APPCONTROL_APP_FILE_H_

#include <cstdint>

#include "wexpol/records/record.h"

struct tblAppFile {
  std::int32_t id = -1;
  std::int16_t app_id = -1;  // Row of "apps".
  wexpol::Text name;         // Of the executable, without a folder; compared byte by byte.
};

// The name of an executable that belongs to a program.
class WEXPOL_API CAppFile : public wexpol::Record<CAppFile, tblAppFile> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_APPCONTROL_APP_FILE_H_
