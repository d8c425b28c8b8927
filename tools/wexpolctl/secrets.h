// What is never printed.

#ifndef WEXPOL_WEXPOLCTL_SECRETS_H_
#define WEXPOL_WEXPOLCTL_SECRETS_H_

#include <string_view>

namespace wexpolctl {

// Stands for a secret that is there.
inline constexpr std::string_view kMask = "********";

// Whether a column of this name holds a secret, in whichever table.
bool IsSecretColumn(std::string_view column);

// Whether the name of a configuration value tells that the value is a secret.
bool IsSecretKey(std::string_view key);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_SECRETS_H_
