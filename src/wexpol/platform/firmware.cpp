#include "wexpol/platform/firmware.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace wexpol {
namespace {

// Little-endian, as firmware stores it.
std::uint32_t Number(const std::uint8_t* bytes, int size) {
  std::uint32_t number = 0;
  while (size-- > 0) number = number << 8 | bytes[size];
  return number;
}

}  // namespace

Bytes TableInSystemAnswer(const Bytes& answer) {
  constexpr std::size_t kHeader = 8;  // the last four bytes are the table's length
  if (answer.size() < kHeader) return {};
  const std::size_t length = std::min<std::size_t>(Number(&answer[4], 4), answer.size() - kHeader);
  return {answer.begin() + kHeader, answer.begin() + kHeader + static_cast<long>(length)};
}

Bytes TableInMemory(const std::function<Bytes(std::uint32_t, std::size_t)>& read) {
  constexpr std::uint32_t kBiosArea = 0xF0000;
  constexpr std::size_t kBiosAreaSize = 0x10000;
  constexpr std::size_t kEntrySize = 15;  // the part that names the table; its bytes add up to 0
  const Bytes area = read(kBiosArea, kBiosAreaSize);
  for (std::size_t at = 0; at + kEntrySize <= area.size(); at += 16) {
    const std::uint8_t* entry = &area[at];
    if (std::memcmp(entry, "_DMI_", 5) == 0 &&
        std::accumulate(entry, entry + kEntrySize, 0u) % 256 == 0) {
      return read(Number(entry + 8, 4), Number(entry + 6, 2));
    }
  }
  return {};
}

}  // namespace wexpol
