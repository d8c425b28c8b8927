// The machine id: one word for the installation of the system, one for the hardware.

#ifndef WEXPOL_IDENTITY_MACHINE_ID_H_
#define WEXPOL_IDENTITY_MACHINE_ID_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wexpol {

using SystemUuid = std::array<std::uint8_t, 16>;

// The UUID of the first System Information structure of an SMBIOS table. Any bytes may come;
// nothing when the table ends, or makes no sense, before the UUID does.
std::optional<SystemUuid> FindSystemUuid(const std::uint8_t* table, std::size_t size);

// The hardware word of a UUID, 40 lower-case hexadecimal digits.
std::string HardwareId(const SystemUuid& uuid);

// The key that holds the installation id of a system that was installed at that time, in seconds
// since 1970. The last character of its name is a blank.
std::wstring InstallationKeyPath(std::uint32_t install_date);

// The machine id of this computer: the installation id, a blank and the hardware word, which is
// empty when the firmware tells nothing. A computer that has no installation id yet gets one.
// Empty when there is none and none could be stored.
std::string MachineId();

// Makes `id` the installation id of this computer.
bool StoreInstallationId(std::string_view id);

}  // namespace wexpol

#endif  // WEXPOL_IDENTITY_MACHINE_ID_H_
