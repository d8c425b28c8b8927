// The invitations that the agent is installed from: table "install_invites".

#ifndef WEXPOL_DEVICECARE_INSTALL_INVITE_H_
#define WEXPOL_DEVICECARE_INSTALL_INVITE_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblInstallInvite {
  std::int32_t id = -1;
  std::int32_t account_id = -1;    // Row of "accounts": who invites.
  wexpol::WideText email_address;  // Who is invited.
  wexpol::WideText token;  // Authenticates requests until the device has a token of its own.
  wexpol::Text link;       // Where the installer is; its query holds the installer's parameters.
  std::uint64_t row_version = 0;  // Rises with each change; 0 while unknown.
};

// An invitation by mail, from which the agent is installed on a computer that the console does not
// know yet. No key is required in a document.
class WEXPOL_API CInstallInvite : public wexpol::Record<CInstallInvite, tblInstallInvite> {
 public:
  static const wexpol::Table& Table();

  CInstallInvite() = default;
  // The texts are copied.
  CInstallInvite(long invite_id, const wchar_t* invite_token);

  // The token of the first invitation, for the caller to delete[]; false, and null, when it has
  // none.
  static bool GetToken(wchar_t** out, sqlite3* db);
  // Of this record; empty when it has none. GetTokenA is UTF-8.
  std::wstring GetToken() const;
  std::string GetTokenA() const;

  // Takes the row of that id or, for an id below 1, of the invitation that this computer was
  // installed from. False when there is none or, with the error object in `error`, when it cannot
  // be read.
  bool GetRecord(sqlite3* db, long invite_id, std::string& error);
  // Whether there is a row of that id; none has the id -1.
  static bool DoesRecordAlreadyExist(sqlite3* db, long invite_id);

  // Parses a document that is one record itself, and updates its row or adds it. False for any
  // other document and when the row cannot be written; no error object is left.
  bool Add2DB_or_UpdateDB(sqlite3* db, const char* json);

  // "account_id" of a document, which is a record or an array of which the first counts; else -1.
  static long GetAccountId(const char* json);

  // The id of the invitation that this computer was installed from. It is written under the class
  // key but read and deleted under the agent key: it comes back only where the two are one.
  bool WriteInstallInviteIdToRegistry() const;
  bool ReadInstallInviteIdFromRegistry();
  static bool DeleteInstallInviteIdFromRegistry();

  // The link of that row or, for an id below 1, of the row with the highest version. False leaves
  // `out`.
  static bool GetDownloadUrl(std::string& out, sqlite3* db, long invite_id);

  // The query of the link as the installer's parameters: a query of b=2&a=1 gives -a "1" -b "2"
  // and a blank. Nothing is decoded or escaped. False, and `out` untouched, without a query.
  bool BuildInstallCmdLineParameters(std::wstring& out);
};

#endif  // WEXPOL_DEVICECARE_INSTALL_INVITE_H_
