// What the system tells about itself.

#ifndef WEXPOL_PLATFORM_SYSTEM_INFO_H_
#define WEXPOL_PLATFORM_SYSTEM_INFO_H_

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace wexpol {

// The name of this computer in DNS, without domain.
std::optional<std::wstring> ComputerDnsHostName();

// A text of unknown length, asked for with a buffer that grows: `ask` gets the buffer and its size
// in characters, and sets the size to that of the text, without its terminator, or when it answers
// kTooSmall to the size that is needed.
enum class Asked { kOk, kTooSmall, kFailed };
std::optional<std::wstring> AskWithGrowingBuffer(
    std::size_t first_size, const std::function<Asked(wchar_t* buffer, std::size_t* size)>& ask);

// The 16 bytes of a new id as the system's UUID allocator gives them; false when it has none.
bool AllocateUuid(std::array<std::uint8_t, 16>* bytes);

// The numbers that tell the editions of Windows apart; the host has none.
struct WindowsVersion {
  std::uint32_t major;
  std::uint32_t minor;
  std::uint32_t suite_mask;
  std::uint32_t product_type;  // 1 is a workstation
};
std::optional<WindowsVersion> QueryWindowsVersion();

// The system and its version for a reader, as "Windows 10.0.19045".
std::string SystemName();

// Lets another thread run.
void SleepYield();

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_SYSTEM_INFO_H_
