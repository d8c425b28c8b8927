// What is never printed.

#ifndef WEXPOL_WEXPOLCTL_SECRETS_H_
#define WEXPOL_WEXPOLCTL_SECRETS_H_

#include <string>
#include <string_view>

namespace wexpolctl {

// Stands for a secret that is there.
inline constexpr std::string_view kMask = "********";

// Whether a column of this name holds a secret, in whichever table.
bool IsSecretColumn(std::string_view column);

// Whether the configuration value of this key may be a secret: all are that are not known better.
bool IsSecretKey(std::string_view key);

// The text, the addresses in it without user name, password and query.
std::string WithoutCredentials(std::string_view text);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_SECRETS_H_
