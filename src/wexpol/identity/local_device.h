// Which row of "devices" is the machine that this runs on.

#ifndef WEXPOL_IDENTITY_LOCAL_DEVICE_H_
#define WEXPOL_IDENTITY_LOCAL_DEVICE_H_

struct sqlite3;
class CDevice;

namespace wexpol {

// The local device is the one whose id the machine has stored; while none is stored, the first row
// with a token, whose id is then stored.
//
// A question about the local device holds one ReadScope over both steps; these join it:
//
//   const ReadScope scope(db);
//   long id;
//   if (!GetLocalDeviceId(db, id) || id < 1) return false;
//   return QueryExists(db, "SELECT ... WHERE device_id=?", id);

// The row with its interfaces. False when there is no such row: also when the stored id has none,
// and nothing is stored then.
bool GetLocalDevice(sqlite3* db, CDevice& device);

// Only the id, which costs no statement once it is stored; it is not checked against the table and
// may then be any number but -1. A row found by its token counts when its id is 1 or more. False
// leaves -1.
bool GetLocalDeviceId(sqlite3* db, long& id);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_LOCAL_DEVICE_H_
