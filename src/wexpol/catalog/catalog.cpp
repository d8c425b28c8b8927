#include "wexpol/catalog/catalog.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "wexpol.h"
#include "wexpol/records/scopes.h"

namespace wexpol {
namespace {

constexpr const RecordClass* kTables[] = {
    &kRecordClass<CTimeZone>,
    &kRecordClass<CTimeServer>,
    &kRecordClass<CAccount>,
    &kRecordClass<CNetwork>,
    &kRecordClass<CDeviceGroup>,
    &kRecordClass<CPolicy>,
    &kRecordClass<CService>,
    &kRecordClass<CPolicyService>,
    &kRecordClass<CInstallInvite>,
    &kRecordClass<CInstallationLogin>,
    &kRecordClass<CDevice>,
    &kRecordClass<CNic>,
    &kRecordClass<CLogin>,
    &kRecordClass<CLoginDetail>,
    &kRecordClass<CDeviceService>,
    &kRecordClass<CServiceConfiguration>,
    &kRecordClass<CGlobalConfiguration>,
    &kRecordClass<CDeviceSubserviceVersion>,
    &kRecordClass<CCategory>,
    &kRecordClass<CFilterSetting>,
    &kRecordClass<CFilterUrl>,
    &kRecordClass<CFilterCategory>,
    &kRecordClass<CFilterProxyPort>,
    &kRecordClass<CProxyPort>,
    &kRecordClass<CSafeSearchParameter>,
    &kRecordClass<CIcatKeyword>,
    &kRecordClass<CNeverBlockApp>,
    &kRecordClass<CNeverBlockDomain>,
    &kRecordClass<CSwgSettings>,
    &kRecordClass<CApp>,
    &kRecordClass<CAppFile>,
    &kRecordClass<CAppControl>,
    &kRecordClass<CAppControlApp>,
    &kRecordClass<CAlertEventType>,
    &kRecordClass<CSalesAlertOption>,
    &kRecordClass<CNxbAvSetting>,
    &kRecordClass<CAppearance>,
    &kRecordClass<CAvSchedule>,
    &kRecordClass<CLastScanSummary>,
    &kRecordClass<CRemoteControlSetting>,
    &kRecordClass<CRestartPolicySettings>,
    &kRecordClass<CSupportDisplaySettings>,
    &kRecordClass<CAccountBackupDetail>,
    &kRecordClass<CDeviceBackupDetail>,
    &kRecordClass<CDeviceBackupStatistics>,
    // Written by this computer alone.
    &kRecordClass<CAppChecksum>,
    &kRecordClass<CAuthLog>,
    &kRecordClass<CAlertLog>,
    &kRecordClass<CAlertLogBuffer>,
    &kRecordClass<CAlertCheck>,
    &kRecordClass<CAlertsSent>,
};
constexpr std::size_t kLocalTables = 6;

bool CanBePrepared(sqlite3* db, const char* sql) {
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2(db, sql, -1, &select, nullptr);
  sqlite3_finalize(select);
  return select != nullptr;
}

}  // namespace

std::span<const RecordClass* const> AllTables() { return kTables; }

std::span<const RecordClass* const> ConsoleTables() {
  return AllTables().first(std::size(kTables) - kLocalTables);
}

const RecordClass* FindTable(std::string_view name) {
  const auto found = std::ranges::find_if(
      kTables, [&](const RecordClass* each) { return name == each->table().name(); });
  return found == std::end(kTables) ? nullptr : *found;
}

bool HasAllTables(sqlite3* db) {
  const ReadScope scope(db);
  // The other name of the settings of remote control, which is a view.
  return CanBePrepared(db, "SELECT id FROM remote_control_settings") &&
         std::ranges::all_of(kTables, [&](const RecordClass* each) {
           return CanBePrepared(db, each->table().select().text());
         });
}

}  // namespace wexpol
