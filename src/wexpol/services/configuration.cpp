#include "wexpol/services/configuration.h"

#include <algorithm>
#include <iterator>

#include "wexpol/antivirus/nxb_av_setting.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/text.h"
#include "wexpol/services/service_configuration.h"

namespace wexpol {
namespace {

constexpr char kDownloadUrlKey[] = "nxb_av_download_url";

constexpr char kFlowKey[] = "sb_flow_enabled";
// The services that take the new installation flow only when they are switched to it.
constexpr short kSwitchedServices[] = {0, 1, 2, 4, 5, 9, 12};

}  // namespace

bool GetConfiguration(std::string& value, sqlite3* db, const char* key, short service_id) {
  if (key && EqualIgnoringCase(key, kDownloadUrlKey)) {
    return CNxbAvSetting::GetDownloadUrl(value, db);
  }
  return CServiceConfiguration::GetServiceConfiguration(value, db, key, service_id);
}

bool GetConfiguration(bool& flag, sqlite3* db, const char* key, short service_id) {
  std::string value;
  if (!GetConfiguration(value, db, key, service_id)) return false;
  flag = EqualIgnoringCase(value, "true");
  return true;
}

bool IsServiceBridgeInstallFlowEnabled(sqlite3* db, short service_id) {
  if (std::ranges::find(kSwitchedServices, service_id) == std::end(kSwitchedServices)) return true;
  bool enabled = false;
  if (!GetConfiguration(enabled, db, kFlowKey, service_id)) {
    LogMessage("sb_flow_enabled is not set for service %d", service_id);
  }
  return enabled;
}

}  // namespace wexpol
