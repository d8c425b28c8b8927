// The network interfaces of the devices: table "nics".

#ifndef WEXPOL_IDENTITY_NIC_H_
#define WEXPOL_IDENTITY_NIC_H_

#include <array>
#include <cstdint>

#include "wexpol/records/record.h"

struct tblNic {
  std::int32_t id = -1;
  std::int32_t device_id = -1;           // Row of "devices".
  std::array<std::uint8_t, 6> mac = {};  // In wire order; zeros while unknown.
  wexpol::Text ipv4;
  wexpol::Text ipv6;
};

// An interface of a device, told by its hardware address.
//
// A "mac" in a document must be exactly twelve hexadecimal digits; it may be missing. The address
// has no null: an update by a document without it writes zeros.
class WEXPOL_API CNic : public wexpol::Record<CNic, tblNic> {
 public:
  CNic() = default;
  // `address` is 6 bytes, or null for zeros.
  explicit CNic(const unsigned char* address, const char* ipv4_text = nullptr,
                const char* ipv6_text = nullptr);
  // Six pairs of hexadecimal digits with one character, whichever, between them; a text that does
  // not have 17 characters gives zeros.
  explicit CNic(const wchar_t* address);

  static const wexpol::Table& Table();

  int DelFromDB(sqlite3* db) { return Record::DelFromDB(db); }
  // Deletes all interfaces of a device; the SQLite step result.
  static int DelFromDB(sqlite3* db, long of_device);

  // The first interface with this address of 6 bytes; none has a null one.
  bool GetRecord(sqlite3* db, const unsigned char* address);
  // Its device, or -1. Any interface counts for a null address. Throws the SQLite code, an int,
  // when the address cannot be bound.
  static long GetDeviceID(sqlite3* db, const unsigned char* address);
  // Whether a device has it; any device for an id below 1.
  static bool DoesMacAddrExist(sqlite3* db, const unsigned char* address, long of_device);

  void SetIpv4(const char* text) { ipv4 = text; }
  void SetIpv6(const char* text) { ipv6 = text; }
};

#endif  // WEXPOL_IDENTITY_NIC_H_
