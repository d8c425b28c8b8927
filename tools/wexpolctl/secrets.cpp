#include "tools/wexpolctl/secrets.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace wexpolctl {
namespace {

constexpr std::string_view kColumns[] = {
    "token",    "installation_token",
    "link",  // Of an invitation: it carries the token.
    "password", "override_password",  "uninstall_password",         "proxy_server_password",
    "license",  "public_key",         "shadow_protect_license_key", "egr_license_key",
};

constexpr std::string_view kWordsOfKeys[] = {"password", "passwd", "token",   "secret",
                                             "license",  "apikey", "api_key", "credential"};

}  // namespace

bool IsSecretColumn(std::string_view column) {
  return std::find(std::begin(kColumns), std::end(kColumns), column) != std::end(kColumns);
}

bool IsSecretKey(std::string_view key) {
  std::string lower(key);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::any_of(std::begin(kWordsOfKeys), std::end(kWordsOfKeys),
                     [&](std::string_view word) { return lower.find(word) != lower.npos; });
}

}  // namespace wexpolctl
