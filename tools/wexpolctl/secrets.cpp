#include "tools/wexpolctl/secrets.h"

#include <algorithm>

#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

constexpr std::string_view kColumns[] = {
    "token",    "installation_token",
    "link",  // Of an invitation: it carries the token.
    "password", "override_password",  "uninstall_password",         "proxy_server_password",
    "license",  "public_key",         "shadow_protect_license_key", "egr_license_key",
};

// The configuration values that support may see. A key that is not here may be new, and a secret.
constexpr std::string_view kHarmlessKeys[] = {"policy_api_url", "nxb_av_download_url",
                                              "sb_flow_enabled", "block_page_text"};

}  // namespace

bool IsSecretColumn(std::string_view column) {
  return std::ranges::find(kColumns, column) != std::end(kColumns);
}

bool IsSecretKey(std::string_view key) {
  return std::ranges::none_of(
      kHarmlessKeys, [&](std::string_view each) { return wexpol::EqualIgnoringCase(key, each); });
}

std::string WithoutCredentials(std::string_view text) {
  constexpr std::string_view kBegin = "://";
  constexpr std::string_view kBlanks = " \t\r\n\"'<>";
  std::string safe;
  for (std::size_t at; (at = text.find(kBegin)) != text.npos;) {
    at += kBegin.size();
    safe += text.substr(0, at);
    text.remove_prefix(at);
    std::string_view address = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(address.size());
    // A password may hold a slash or a question mark: the last @ ends it.
    const std::size_t host = address.rfind('@');
    if (host != address.npos) address.remove_prefix(host + 1);
    const std::size_t query = address.find_first_of("?#");
    safe += address.substr(0, query);
    if (query != address.npos) safe += "?...";
  }
  return safe += text;
}

}  // namespace wexpolctl
