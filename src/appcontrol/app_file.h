// The file names that tell a program: table "app_files".

#ifndef APPCONTROL_APP_FILE_H_
#define APPCONTROL_APP_FILE_H_

#include <cstdint>

#include "records/record.h"

struct tblAppFile {
  std::int32_t id = -1;
  std::int16_t app_id = -1;
  records::Text name;  // Of the executable, without a folder; compared byte by byte.
};

class WEXPOL_API CAppFile : public records::Record<CAppFile, tblAppFile> {
 public:
  static const records::Table& Table();
};

#endif  // APPCONTROL_APP_FILE_H_
