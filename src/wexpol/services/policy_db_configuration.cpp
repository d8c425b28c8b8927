// The facade's operations over configuration values.

#include "wexpol/policydb/facade.h"
#include "wexpol/services/configuration.h"
#include "wexpol/services/global_configuration.h"
#include "wexpol/services/service_configuration.h"

using wexpol::Ask;

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
  return Ask([&] { return wexpol::GetConfiguration(value, handle(), key, serviceId); });
}
bool CPolicyDB::GetServiceConfiguration(bool& flag, const char* key, short serviceId) const {
  return Ask([&] { return wexpol::GetConfiguration(flag, handle(), key, serviceId); });
}
bool CPolicyDB::SetServiceConfigurationRaw(const char* value, const char* key, short isUrl,
                                           short serviceId) {
  return Ask([&] {
    return CServiceConfiguration().SetServiceConfiguration(handle(), value, key, isUrl, serviceId);
  });
}
bool CPolicyDB::IsServiceBridgeInstallFlowEnabled(short serviceId) const {
  return Ask([&] { return wexpol::IsServiceBridgeInstallFlowEnabled(handle(), serviceId); });
}

bool CPolicyDB::GetGlobalConfiguration(std::wstring& value, short id) {
  return Ask([&] { return CGlobalConfiguration::GetGlobalConfiguration(value, handle(), id); });
}
bool CPolicyDB::SetGlobalConfiguration(CGlobalConfiguration& value) {
  return Ask([&] { return value.SetGlobalConfiguration(handle()); });
}
