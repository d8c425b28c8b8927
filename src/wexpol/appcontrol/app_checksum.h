// The digests by which programs are told: table "app_checksums".

#ifndef WEXPOL_APPCONTROL_APP_CHECKSUM_H_
#define WEXPOL_APPCONTROL_APP_CHECKSUM_H_

#include <array>
#include <cstdint>

#include "wexpol/records/record.h"

struct tblAppChecksum {
  std::int32_t id = -1;
  std::int16_t app_id = -1;               // Row of "apps"; 0 is no program.
  std::array<std::uint8_t, 16> md5 = {};  // Of the executable.
  std::int16_t control_flag = 0;          // The CONTROL_FLAG under which the digest was learnt.
};

// The digest of an executable that belongs to a program.
//
// Add2DB never adds a row and answers 25 (SQLITE_RANGE): the table grows by what the decisions
// learn alone.
class WEXPOL_API CAppChecksum : public wexpol::Record<CAppChecksum, tblAppChecksum> {
 public:
  static const wexpol::Table& Table();
};

#endif  // WEXPOL_APPCONTROL_APP_CHECKSUM_H_
