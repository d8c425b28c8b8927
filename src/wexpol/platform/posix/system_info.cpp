#include "wexpol/platform/system_info.h"

#include <sched.h>
#include <sys/random.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "wexpol/platform/text.h"

namespace wexpol {

std::optional<std::wstring> ComputerDnsHostName() {
  char name[256];
  if (::gethostname(name, sizeof name) != 0) return std::nullopt;
  name[sizeof name - 1] = '\0';
  std::string_view host = name;
  return Utf8ToWide(host.substr(0, host.find('.')));
}

bool AllocateUuid(std::array<std::uint8_t, 16>* bytes) {
  return ::getrandom(bytes->data(), bytes->size(), 0) == static_cast<ssize_t>(bytes->size());
}

std::optional<WindowsVersion> QueryWindowsVersion() { return std::nullopt; }

std::string SystemName() {
  struct utsname name;
  if (::uname(&name) != 0) return "unknown";
  return std::string(name.sysname) + ' ' + name.release + ' ' + name.machine;
}

void SleepYield() { ::sched_yield(); }

}  // namespace wexpol
