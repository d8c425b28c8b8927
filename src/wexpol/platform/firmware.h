// The machine's SMBIOS table as the firmware left it.

#ifndef WEXPOL_PLATFORM_FIRMWARE_H_
#define WEXPOL_PLATFORM_FIRMWARE_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace wexpol {

using Bytes = std::vector<std::uint8_t>;

// The structures of the table, one after the other, untrusted; empty when they cannot be read.
Bytes ReadSmbiosTable();

// Pure parts of the above. The structures in the system's answer, which puts 8 bytes before them...
Bytes TableInSystemAnswer(const Bytes& answer);
// ...and those that physical memory holds, found by the entry point in the BIOS area. `read`
// answers the bytes at an address, or nothing.
Bytes TableInMemory(const std::function<Bytes(std::uint32_t address, std::size_t size)>& read);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_FIRMWARE_H_
