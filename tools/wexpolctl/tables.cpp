#include "tools/wexpolctl/tables.h"

#include <algorithm>

#include "wexpol.h"
#include "wexpol/policydb/connection.h"

namespace wexpolctl {
namespace {

using TakeDocument = bool (CPolicyDB::*)(const char* json);
using Emptying = bool (CPolicyDB::*)();

bool Keep(bool done, CPolicyDB& session, std::string& error) {
  if (!done) error = session.GetError();
  return done;
}

// A table with one operation that replaces it.
template <typename Record, TakeDocument kReplace>
constexpr SyncTable Replaced() {
  return {&wexpol::kRecordClass<Record>,
          [](CPolicyDB& session, const char* json, std::string& error) {
            return Keep((session.*kReplace)(json), session, error);
          }};
}

// A table with one operation that empties it and one that adds to it.
template <typename Record, Emptying kClear, TakeDocument kAdd>
constexpr SyncTable Refilled() {
  return {&wexpol::kRecordClass<Record>,
          [](CPolicyDB& session, const char* json, std::string& error) {
            if ((session.*kClear)()) return Keep((session.*kAdd)(json), session, error);
            sqlite3* db = wexpol::HandleOf(session);
            error = wexpol::FailureObject(db, sqlite3_errcode(db));
            return false;
          }};
}

// A table that the session has no such operations for.
template <typename Record>
constexpr SyncTable Plain() {
  return {&wexpol::kRecordClass<Record>,
          [](CPolicyDB& session, const char* json, std::string& error) {
            return wexpol::ReplaceTable(wexpol::HandleOf(session), wexpol::kRecordClass<Record>,
                                        json, error);
          }};
}

constexpr SyncTable kTables[] = {
    Replaced<CTimeZone, &CPolicyDB::ClearAndAddTimeZones>(),
    Replaced<CTimeServer, &CPolicyDB::ClearAndAddTimeServers>(),
    Replaced<CAccount, &CPolicyDB::ClearAndAddAccounts>(),
    Plain<CNetwork>(),
    Refilled<CDeviceGroup, &CPolicyDB::ClearDeviceGroups, &CPolicyDB::AddDeviceGroups>(),
    Replaced<CPolicy, &CPolicyDB::ClearAndAddPolicies>(),
    Replaced<CService, &CPolicyDB::ClearAndAddServices>(),
    Refilled<CPolicyService, &CPolicyDB::ClearPolicyServices, &CPolicyDB::AddPolicyServices>(),
    Refilled<CInstallInvite, &CPolicyDB::ClearInstallInvites, &CPolicyDB::AddInstallInvites>(),
    Replaced<CInstallationLogin, &CPolicyDB::ClearAndAddInstallationLogins>(),
    Replaced<CDevice, &CPolicyDB::ClearAndAddDevices>(),
    Refilled<CNic, &CPolicyDB::ClearNics, &CPolicyDB::AddNics>(),
    Refilled<CLogin, &CPolicyDB::ClearLogins, &CPolicyDB::AddLogins>(),
    Refilled<CLoginDetail, &CPolicyDB::ClearLoginDetails, &CPolicyDB::AddLoginDetails>(),
    Refilled<CDeviceService, &CPolicyDB::ClearDeviceServices, &CPolicyDB::AddDeviceServices>(),
    Refilled<CServiceConfiguration, &CPolicyDB::ClearServiceConfigurations,
             &CPolicyDB::AddServiceConfigurations>(),
    Plain<CGlobalConfiguration>(),
    Replaced<CDeviceSubserviceVersion, &CPolicyDB::ClearAndAddDeviceSubserviceVersions>(),
    Replaced<CCategory, &CPolicyDB::ClearAndAddCategories>(),
    Refilled<CFilterSetting, &CPolicyDB::ClearFilters, &CPolicyDB::AddFilterSettings>(),
    Refilled<CFilterUrl, &CPolicyDB::ClearFilterUrls, &CPolicyDB::AddFilterUrls>(),
    Refilled<CFilterCategory, &CPolicyDB::ClearFilterCategories, &CPolicyDB::AddFilterCategories>(),
    Refilled<CFilterProxyPort, &CPolicyDB::ClearFilterProxyPorts,
             &CPolicyDB::AddFilterProxyPorts>(),
    Replaced<CProxyPort, &CPolicyDB::ClearAndAddProxyPorts>(),
    Replaced<CSafeSearchParameter, &CPolicyDB::ClearAndAddSafeSearchParameters>(),
    Replaced<CIcatKeyword, &CPolicyDB::ClearAndAddIcatKeywords>(),
    Replaced<CNeverBlockApp, &CPolicyDB::ClearAndAddNeverBlockApps>(),
    Replaced<CNeverBlockDomain, &CPolicyDB::ClearAndAddNeverBlockDomains>(),
    Replaced<CSwgSettings, &CPolicyDB::ClearAndAddSwgSettings>(),
    Replaced<CApp, &CPolicyDB::ClearAndAddApps>(),
    Replaced<CAppFile, &CPolicyDB::ClearAndAddAppFiles>(),
    Refilled<CAppControl, &CPolicyDB::ClearAppControls, &CPolicyDB::AddAppControls>(),
    Refilled<CAppControlApp, &CPolicyDB::ClearAppControlApps, &CPolicyDB::AddAppControlApps>(),
    Replaced<CAlertEventType, &CPolicyDB::ClearAndAddAlertEventTypes>(),
    Replaced<CSalesAlertOption, &CPolicyDB::ClearAndAddSalesAlertOptions>(),
    Replaced<CNxbAvSetting, &CPolicyDB::ClearAndAddNxbAvSettings>(),
    Refilled<CAppearance, &CPolicyDB::ClearAppearances, &CPolicyDB::AddAppearances>(),
    Refilled<CAvSchedule, &CPolicyDB::ClearAvSchedules, &CPolicyDB::AddAvSchedules>(),
    Replaced<CLastScanSummary, &CPolicyDB::ClearAndAddLastScanSummaries>(),
    Refilled<CRemoteControlSetting, &CPolicyDB::ClearRemoteControlSettings,
             &CPolicyDB::AddRemoteControlSettings>(),
    Replaced<CRestartPolicySettings, &CPolicyDB::ClearAndAddRestartPolicySettings>(),
    Replaced<CSupportDisplaySettings, &CPolicyDB::ClearAndAddSupportDisplaySettings>(),
    Replaced<CAccountBackupDetail, &CPolicyDB::ClearAndAddAccountBackupDetails>(),
    Replaced<CDeviceBackupDetail, &CPolicyDB::ClearAndAddDeviceBackupDetails>(),
    Replaced<CDeviceBackupStatistics, &CPolicyDB::ClearAndAddDeviceBackupStatistics>(),
};

}  // namespace

std::span<const SyncTable> SyncTables() { return kTables; }

const SyncTable* FindSyncTable(std::string_view name) {
  const auto found = std::find_if(std::begin(kTables), std::end(kTables),
                                  [&](const SyncTable& table) { return name == table.name(); });
  return found == std::end(kTables) ? nullptr : found;
}

}  // namespace wexpolctl
