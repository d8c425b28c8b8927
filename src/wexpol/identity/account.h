// The account of the customer: table "accounts".

#ifndef WEXPOL_IDENTITY_ACCOUNT_H_
#define WEXPOL_IDENTITY_ACCOUNT_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

// Values of account_status_id.
enum ACCOUNT_STATUS : std::int16_t {
  ACCOUNT_STATUS_ACTIVE = 1,
  ACCOUNT_STATUS_DISABLED = 2,
};

struct tblAccount {
  std::int32_t id = -1;
  std::uint32_t locale_id = UINT32_MAX;  // A Windows locale id.
  std::int16_t account_status_id = -1;   // An ACCOUNT_STATUS.
  std::int16_t time_zone_id = -1;        // Row of "time_zones".
};

// The customer whose devices these are. There is one row; where there are more, the first counts.
//
// Parsing a document stores the locale id under the agent key at once, before the keys after it
// are read.
class WEXPOL_API CAccount : public wexpol::Record<CAccount, tblAccount> {
 public:
  static const wexpol::Table& Table();

  // The id of the first account, -1 when there is none.
  static long GetAccountId(sqlite3* db);
  // Of the first account.
  static bool IsAccountDisabled(sqlite3* db);
  // True when there is an account; a NULL leaves `locale_id`.
  static bool GetLocaleId(unsigned long& locale_id, sqlite3* db);

  // The decimal text of `locale_id`; empty when it takes more than 7 digits.
  std::string GetLocaleIdString();

  // DWORD "LID" under the agent key. Reading is false, and the field untouched, when it is not
  // there.
  bool WriteLocaleIdToRegistry();
  bool ReadLocaleIdFromRegistry();

  // The 4 bytes of the account id, binary value "ACP" under the class key.
  bool WriteToRegistry();
  // Whether the stored account id is this one; false when nothing of the right size is stored.
  bool CompareWithRegistry(long account_id);
  bool CompareWithRegistry();
};

#endif  // WEXPOL_IDENTITY_ACCOUNT_H_
