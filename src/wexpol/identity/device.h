// The devices of the account: table "devices".

#ifndef WEXPOL_IDENTITY_DEVICE_H_
#define WEXPOL_IDENTITY_DEVICE_H_

#include <cstdint>
#include <list>
#include <string>

#include "wexpol/identity/nic.h"
#include "wexpol/records/owned_list.h"
#include "wexpol/records/record.h"

// The console's numbers; none is interpreted here.
enum DEVICE_STATUS : std::int16_t {};

struct tblDevice {
  std::int32_t id = -1;
  std::int32_t account_id = -1;
  std::int32_t policy_id = -1;
  std::int16_t device_type_id = -1;
  std::int16_t operating_system_id = -1;
  std::int16_t device_status_id = -1;  // A DEVICE_STATUS.
  wexpol::WideText name;               // Computer name.
  wexpol::WideText description;
  wexpol::WideText comment;
  wexpol::Text ccl_id;     // Machine id: installation id, a blank, hardware id.
  wexpol::WideText token;  // Only the local device has one.
  std::int16_t time_zone_id = -1;
  wexpol::WideText manufacturer;
  wexpol::WideText domain;  // Windows domain.
  wexpol::Text wan_ip;      // Public address of the device's network; devices of one LAN share it.
  std::int32_t device_group_id = -1;
  std::int16_t is_master = -1;  // This and the next two: 1, 0, or -1 while unknown.
  std::int16_t allow_remote_connection = -1;
  std::int16_t device_detection_enabled = -1;
  std::int32_t install_invite_id = -1;
  wexpol::Text device_uid;
  wexpol::WideText midex;
  wexpol::WideText os_display;
  wexpol::WideText os_build;
  wexpol::WideText os_internal_version;
};

// A device of the account, which may be this one.
//
// Besides its row a device owns the list of its interfaces, which the generic row operations leave
// alone: documents may nest it under "nics", rows lie in a table of their own.
class WEXPOL_API CDevice : public wexpol::Record<CDevice, tblDevice> {
 public:
  static const wexpol::Table& Table();

  // Also empties the list of interfaces; with `free` false they are the caller's, who took them.
  void Reset(bool free);

  // A strict parse also requires the account, policy, type, system, status and name. An interface
  // that cannot be parsed is dropped, the others are kept.
  bool ParseJson(const rapidjson::Value& value);
  bool ParseJson(const rapidjson::Value& value, bool strict);
  bool ParseJson(const char* json, bool strict);

  // With a list, "nics" follows the fields.
  void GenerateJson(std::string& out) const;
  void GenerateJson(std::string& out, const std::list<CNic*>* nics) const;

  // Takes only the "id" of a JSON object; false, and nothing taken, when it is no integer.
  bool ParseJsonForId(const char* json);

  // Reads a device with its interfaces; for an id of -1 the first one that has a token, without
  // interfaces. False, and the record untouched, when there is none or not all of it can be read.
  bool SpecialGetFromDB(sqlite3* db, long device_id);

  // Reads the master of the LAN that the device `device_id` is in, with the interfaces of that
  // device. False as SpecialGetFromDB.
  bool GetMasterAgentForThisLAN(sqlite3* db, long device_id);

  // The token of a device; for an id below 1 that of the first device. False when it is NULL. The
  // wide text is the caller's to delete[], and null on failure.
  static bool GetToken(wchar_t** out, sqlite3* db, long device_id);
  static bool GetToken(std::string& out, sqlite3* db, long device_id);

  // Writes the status of a device. False when the statement fails, not when there is no such
  // device.
  static bool UpdateDeviceStatus(sqlite3* db, long device_id, DEVICE_STATUS status);

  // What the row of a device says. What is not known, for want of a row or of a value, is no for
  // the one and yes for the other, on purpose.
  static bool IsVncConnectionAllowed(sqlite3* db, long device_id);
  static bool IsDeviceDetectionEnabled(sqlite3* db, long device_id);

  // Whether the names are equal, ignoring case.
  bool operator==(const CDevice& other) const;

  // Takes the DNS host name of this computer; null and false when it is not known.
  bool SetName();
  // False for a null name. Narrow is UTF-8; `size` counts the terminator, and a name that does not
  // fit leaves `out`.
  bool GetNameW(std::wstring& out) const;
  bool GetNameA(std::string& out) const;
  bool GetNameA(char* out, int size) const;

  // Takes the machine id of this computer; see "wexpol/identity/machine_id.h". False leaves
  // `ccl_id`.
  bool GenerateCclId();
  // Makes the installation id of `ccl_id` that of this computer.
  bool WriteCclIdToRegistry();

  void SetName(const wchar_t* text) { name = text; }
  void SetComment(const wchar_t* text) { comment = text; }
  void SetManufacturer(const wchar_t* text) { manufacturer = text; }
  void SetDomain(const wchar_t* text) { domain = text; }
  void SetDomain(const char* utf8);
  void SetMidex(const wchar_t* text) { midex = text; }
  void SetOSDisplayName(const wchar_t* text) { os_display = text; }
  void SetOSBuildCode(const wchar_t* text) { os_build = text; }
  void SetOSInternalVersion(const wchar_t* text) { os_internal_version = text; }

  void FreeName() { name = nullptr; }
  void FreeDomain() { domain = nullptr; }
  void FreeManufacturer() { manufacturer = nullptr; }
  void FreeMidex() { midex = nullptr; }
  void FreeCclId() { ccl_id = nullptr; }
  void FreeOSDisplayName() { os_display = nullptr; }
  void FreeOSBuildCode() { os_build = nullptr; }
  void FreeOSInternalVersion() { os_internal_version = nullptr; }

  const std::list<CNic*>& nics() const { return nics_.items(); }
  // Appends the interfaces to `out`, whose owner then deletes them.
  void MoveNics(std::list<CNic*>& out) { out.splice(out.end(), nics_.items()); }

 private:
  // Becomes `device` with the interfaces of the device `nics_of`; false, and nothing changed, when
  // they cannot be read.
  bool Take(CDevice&& device, sqlite3* db, long nics_of);

  wexpol::OwnedList<CNic> nics_;
};

#endif  // WEXPOL_IDENTITY_DEVICE_H_
