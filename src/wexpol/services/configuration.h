// The configuration values as the agent asks for them.

#ifndef WEXPOL_SERVICES_CONFIGURATION_H_
#define WEXPOL_SERVICES_CONFIGURATION_H_

#include <string>

struct sqlite3;

namespace wexpol {

// The value of a key for a service; see CServiceConfiguration::GetServiceConfiguration. One key is
// answered by the settings of the antivirus component instead, for every service: the address of
// its installer, "nxb_av_download_url". False, and the output untouched, when there is no value.
bool GetConfiguration(std::string& value, sqlite3* db, const char* key, short service_id);

// The same of a switch, which "true" in any case turns on and everything else off.
bool GetConfiguration(bool& flag, sqlite3* db, const char* key, short service_id);

// Whether a service is installed by the new flow: most are, some only where "sb_flow_enabled" says
// so. One of these without the switch is logged.
bool IsServiceBridgeInstallFlowEnabled(sqlite3* db, short service_id);

}  // namespace wexpol

#endif  // WEXPOL_SERVICES_CONFIGURATION_H_
