// Which row of "devices" is the machine that this runs on, and what is asked about it.

#ifndef WEXPOL_IDENTITY_LOCAL_DEVICE_H_
#define WEXPOL_IDENTITY_LOCAL_DEVICE_H_

#include <string>
#include <utility>

#include "wexpol/identity/device.h"
#include "wexpol/records/scopes.h"

namespace wexpol {

// The local device is the one whose id the machine has stored; while none is stored, the first row
// with a token, whose id is then stored.

// The row with its interfaces. False when there is no such row: also when the stored id has none,
// and nothing is stored then.
bool GetLocalDevice(sqlite3* db, CDevice& device);

// Only the id, which costs no statement once it is stored; -1 when there is none. A stored id is
// not checked against the table and may be any number. A row found by its token counts when its id
// is 1 or more.
long LocalDeviceId(sqlite3* db);

// What `question` answers about the id of the local device, on one consistent read of the file;
// `unknown` when there is no local device with an id of 1 or more.
//
//   return AskLocalDevice(db, false, [&](long id) { return QueryExists(db, "SELECT ...", id); });
template <typename Answer, typename Question>
Answer AskLocalDevice(sqlite3* db, Answer unknown, Question&& question) {
  const ReadScope scope(db);
  const long id = LocalDeviceId(db);
  return id < 1 ? unknown : std::forward<Question>(question)(id);
}

// The questions of the session. False, and the outputs left alone, where nothing is known.
bool GetLocalDeviceToken(sqlite3* db, std::string& token);
// The name of the local device's group; a failed read leaves the error object in `error`.
bool GetLocalDeviceGroupName(sqlite3* db, std::wstring& name, std::string& error);
// Only when the row says so: what is not known is no, unlike in CDevice::IsDeviceDetectionEnabled.
bool IsLocalDeviceDetectionEnabled(sqlite3* db);
bool IsLocalVncConnectionAllowed(sqlite3* db);
// -1 when the device is not known or has none.
long LocalDevicePolicyId(sqlite3* db);
// `self` is the local device; the master of its LAN comes with the interfaces of `self`.
bool GetMasterOfLocalDevice(sqlite3* db, CDevice& master, CDevice& self);

// Writes the status of a device, for an id below 1 of the local one.
bool SetDeviceStatus(sqlite3* db, long id, DEVICE_STATUS status);
// Makes the device `id`, where there is none the local one, that of this machine: stores its id
// and its installation id. The answer is that of the first.
bool StoreDeviceOfMachine(sqlite3* db, long id);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_LOCAL_DEVICE_H_
