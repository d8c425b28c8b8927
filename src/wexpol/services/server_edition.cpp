#include "wexpol/services/server_edition.h"

#include <cstdint>

namespace wexpol {
namespace {

constexpr std::uint32_t kWorkstation = 1;
constexpr std::uint32_t kSmallBusiness = 0x0001;
constexpr std::uint32_t kHomeServer = 0x8000;

}  // namespace

bool IsServerEdition(const WindowsVersion& version) {
  const bool is_server = version.product_type != kWorkstation;
  switch (version.major) {
    case 10:
      return version.minor == 0 && is_server;
    case 6:
      return version.minor <= 3 && is_server;
    case 5:
      // Small-business and home servers call themselves workstations.
      return version.minor == 2 &&
             (is_server || (version.suite_mask & (kHomeServer | kSmallBusiness)));
    default:
      return false;
  }
}

}  // namespace wexpol
