// The facade's operations over configuration values.

#include <algorithm>
#include <iterator>

#include "wexpol/antivirus/nxb_av_setting.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/diagnostic_log.h"
#include "wexpol/policydb/facade.h"
#include "wexpol/services/global_configuration.h"
#include "wexpol/services/service_configuration.h"

namespace {

// The installer's address is kept in the settings of the antivirus component.
constexpr char kDownloadUrlKey[] = "nxb_av_download_url";

constexpr char kFlowKey[] = "sb_flow_enabled";
// The services that take the new installation flow only when they are switched to it.
constexpr short kSwitchedServices[] = {0, 1, 2, 4, 5, 9, 12};

}  // namespace

bool CPolicyDB::AddServiceConfigurations(const char* json) {
  return Add<CServiceConfiguration>(json);
}
bool CPolicyDB::ClearServiceConfigurations() { return Clear<CServiceConfiguration>(); }
bool CPolicyDB::GetAllServiceConfigurations(std::list<CServiceConfiguration*>& out) {
  return List(out);
}
bool CPolicyDB::AddGlobalConfigurations(const char* json) {
  return Add<CGlobalConfiguration>(json);
}

bool CPolicyDB::GetServiceConfiguration(std::string& value, const char* key,
                                        short serviceId) const {
  return wexpol::Ask([&] {
    if (key && wexpol::EqualIgnoringCase(key, kDownloadUrlKey)) {
      return CNxbAvSetting::GetDownloadUrl(value, handle());
    }
    return CServiceConfiguration::GetServiceConfiguration(value, handle(), key, serviceId);
  });
}

bool CPolicyDB::GetServiceConfiguration(bool& flag, const char* key, short serviceId) const {
  return wexpol::Ask([&] {
    std::string value;
    if (!GetServiceConfiguration(value, key, serviceId)) return false;
    flag = wexpol::EqualIgnoringCase(value, "true");
    return true;
  });
}

bool CPolicyDB::SetServiceConfigurationRaw(const char* value, const char* key, short isUrl,
                                           short serviceId) {
  return wexpol::Ask([&] {
    return CServiceConfiguration().SetServiceConfiguration(handle(), value, key, isUrl, serviceId);
  });
}

bool CPolicyDB::IsServiceBridgeInstallFlowEnabled(short serviceId) const {
  if (std::ranges::find(kSwitchedServices, serviceId) == std::end(kSwitchedServices)) return true;
  bool enabled = false;
  if (!GetServiceConfiguration(enabled, kFlowKey, serviceId)) {
    wexpol::LogMessage("sb_flow_enabled is not set for service %d", serviceId);
  }
  return enabled;
}

bool CPolicyDB::GetGlobalConfiguration(std::wstring& value, short id) {
  return wexpol::Ask(
      [&] { return CGlobalConfiguration::GetGlobalConfiguration(value, handle(), id); });
}

bool CPolicyDB::SetGlobalConfiguration(CGlobalConfiguration& value) {
  return wexpol::Ask([&] { return value.SetGlobalConfiguration(handle()); });
}
