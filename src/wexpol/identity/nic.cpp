#include "wexpol/identity/nic.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>

#include "wexpol/platform/hex.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblNic::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblNic::device_id>("device_id"),
    Column<&tblNic::mac>("mac", wexpol::kWellFormed),
    Column<&tblNic::ipv4>("ipv4"),
    Column<&tblNic::ipv6>("ipv6"),
};

constexpr std::size_t kMacSize = sizeof(tblNic::mac);

wexpol::Blob MacBytes(const unsigned char* mac) { return {mac, kMacSize}; }

// Reads up to the first character that is no digit, as the number of a text is read.
std::uint8_t HexByte(const wchar_t* pair) {
  int value = 0;
  for (int i = 0; i < 2 && wexpol::HexDigit(pair[i]) >= 0; ++i) {
    value = value * 16 + wexpol::HexDigit(pair[i]);
  }
  return static_cast<std::uint8_t>(value);
}

}  // namespace

const wexpol::Table& CNic::Table() {
  static const wexpol::Table& table = *new wexpol::Table("nics", "nic", kColumns);
  return table;
}

CNic::CNic(const unsigned char* address, const char* ipv4_text, const char* ipv6_text) {
  if (address) std::copy_n(address, kMacSize, mac.begin());
  ipv4 = ipv4_text;
  ipv6 = ipv6_text;
}

CNic::CNic(const wchar_t* address) {
  constexpr std::size_t kLength = kMacSize * 3 - 1;
  if (!address || std::wcslen(address) != kLength) return;
  for (std::size_t i = 0; i < kMacSize; ++i) mac[i] = HexByte(address + i * 3);
}

int CNic::DelFromDB(sqlite3* db, long of_device) {
  return wexpol::Statement(db, "DELETE FROM nics WHERE device_id=?", of_device).Step();
}

bool CNic::GetRecord(sqlite3* db, const unsigned char* address) {
  return wexpol::QueryRecord(*this, db, "SELECT * FROM nics WHERE mac=?", MacBytes(address));
}

long CNic::GetDeviceID(sqlite3* db, const unsigned char* address) {
  if (!address) {
    // The first row as it lies in the table, not as an index has it.
    return wexpol::QueryInt(db, "SELECT device_id FROM nics NOT INDEXED").value_or(-1);
  }
  wexpol::Statement select(db, "SELECT device_id FROM nics WHERE mac=?");
  if (!select.ok()) return -1;
  select.Bind(1, MacBytes(address));
  if (!select.ok()) throw select.code();
  return select.StepRow() && !select.IsNull(0) ? select.Int(0) : -1;
}

bool CNic::DoesMacAddrExist(sqlite3* db, const unsigned char* address, long of_device) {
  if (of_device <= 0) {
    return wexpol::QueryExists(db, "SELECT id FROM nics WHERE mac=?", MacBytes(address));
  }
  return wexpol::QueryExists(db, "SELECT id FROM nics WHERE mac=? AND device_id=?",
                             MacBytes(address), of_device);
}
