// The command line of the safe-reboot tool, as a function of everything that it depends on.

#ifndef WEXPOL_DEVICECARE_SAFE_REBOOT_H_
#define WEXPOL_DEVICECARE_SAFE_REBOOT_H_

#include <string>
#include <string_view>

#include "wexpol/devicecare/brand.h"

struct tblRestartPolicySettings;

namespace wexpol {

// Whether the user of a process is the one that the system's services run as.
bool IsProcessRunningAsServiceUnderSYSTEM(std::wstring_view user_name);

// Empty when the policy asks for no restart. A null title or service name is that of the brand.
std::wstring SafeRebootCommandLine(const tblRestartPolicySettings& policy, Brand brand,
                                   bool under_system, const wchar_t* title,
                                   const wchar_t* service_name);

}  // namespace wexpol

#endif  // WEXPOL_DEVICECARE_SAFE_REBOOT_H_
