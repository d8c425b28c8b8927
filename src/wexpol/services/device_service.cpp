#include "wexpol/services/device_service.h"

#include "wexpol/platform/system_info.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/table.h"
#include "wexpol/services/server_edition.h"

namespace {

using wexpol::Column;
using Row = tblDeviceService;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&Row::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&Row::device_id>("device_id"),
    Column<&Row::service_id>("service_id"),
    Column<&Row::device_service_status_id>("device_service_status_id"),
    Column<&Row::remove_competitive_products>("remove_competitive_products"),
    Column<&Row::enabled>("enabled"),
    Column<&Row::upgrade_action_id>("upgrade_action_id"),
    Column<&Row::with_firewall>("with_firewall"),
    Column<&Row::with_mail_guard>("with_mail_guard"),
    Column<&Row::with_identity_guard>("with_identity_guard"),
    Column<&Row::with_web_guard>("with_web_guard"),
    Column<&Row::with_spam_filter>("with_spam_filter"),
    Column<&Row::with_isolation>("with_isolation"),
    Column<&Row::with_file_guard>("with_file_guard"),
    Column<&Row::with_recovery_media>("with_recovery_media"),
    Column<&Row::with_site_rating>("with_site_rating"),
    Column<&Row::with_mail_server_guard>("with_mail_server_guard"),
    Column<&Row::with_portal_server_guard>("with_portal_server_guard"),
    Column<&Row::with_browser_cleaner>("with_browser_cleaner"),
    Column<&Row::with_secure_browser>("with_secure_browser"),
    Column<&Row::with_file_eraser>("with_file_eraser"),
    Column<&Row::with_app_updater>("with_app_updater"),
    Column<&Row::with_network_scanner>("with_network_scanner"),
    Column<&Row::with_dns_guard>("with_dns_guard"),
    Column<&Row::with_password_vault>("with_password_vault"),
    Column<&Row::with_camera_guard>("with_camera_guard"),
    Column<&Row::management_url>("management_url"),
    Column<&Row::installation_token>("installation_token"),
};

constexpr wexpol::Sql kSelect = "SELECT * FROM device_services WHERE device_id=? AND service_id=?";

struct InstallerOption {
  const char* name;
  bool Row::*component;  // Null where it is never installed.
};

// In the order of the installer, which is not that of the columns.
constexpr InstallerOption kOptions[] = {
    {"opt_web_guard=", &Row::with_web_guard},
    {"opt_firewall=", &Row::with_firewall},
    {"opt_mail_guard=", &Row::with_mail_guard},
    {"opt_identity_guard=", &Row::with_identity_guard},
    {"opt_spam_filter=", &Row::with_spam_filter},
    {"opt_isolation=", &Row::with_isolation},
    {"opt_file_guard=", &Row::with_file_guard},
    {"opt_recovery_media=", &Row::with_recovery_media},
    {"opt_site_rating=", &Row::with_site_rating},
    {"opt_mail_server_guard=", &Row::with_mail_server_guard},
    {"opt_portal_server_guard=", &Row::with_portal_server_guard},
    {"opt_browser_cleaner=", &Row::with_browser_cleaner},
    {"opt_vpn_client=", nullptr},
    {"opt_secure_browser=", &Row::with_secure_browser},
    {"opt_file_eraser=", &Row::with_file_eraser},
    {"opt_app_updater=", &Row::with_app_updater},
    {"opt_network_scanner=", &Row::with_network_scanner},
    {"opt_dns_guard=", &Row::with_dns_guard},
    {"opt_password_vault=", &Row::with_password_vault},
    {"opt_camera_guard=", &Row::with_camera_guard},
};

}  // namespace

const wexpol::Table& CDeviceService::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("device_services", "device_service", kColumns);
  return table;
}

CDeviceService::CDeviceService(short service, short status, bool is_enabled) {
  service_id = service;
  device_service_status_id = status;
  enabled = is_enabled;
}

bool CDeviceService::Get(sqlite3* db, long device, short service) {
  return wexpol::QueryRecord(*this, db, kSelect, device, service);
}

bool CDeviceService::IsDeviceServiceAvailable(sqlite3* db, long device, short service) {
  return wexpol::QueryExists(db, kSelect, device, service);
}

bool CDeviceService::SetDeviceServiceInfo(sqlite3* db, long id, const char* column, short value) {
  if (!column || !wexpol::IsIdentifier(column)) return false;
  const std::string sql = std::string("UPDATE device_services SET ") + column + "=? WHERE id=?";
  return wexpol::Statement::Composed(db, sql, value, id).StepDone();
}

bool CDeviceService::GetServicesMarkedForAutoUpgrade(sqlite3* db, std::set<short>& services,
                                                     long device) {
  wexpol::Statement select(db,
                           "SELECT service_id FROM device_services WHERE upgrade_action_id!=1 "
                           "AND (?1<1 OR device_id=?1) GROUP BY service_id",
                           device);
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    services.insert(static_cast<short>(select.Int(0)));
  }
  return code == SQLITE_DONE;
}

bool CDeviceService::IsServiceInstallNeeded() const {
  // Unlike the question of the session, the record counts an installed service.
  return device_service_status_id >= wexpol::kServiceFirstStage &&
         device_service_status_id <= wexpol::kServiceInstalled;
}

bool CDeviceService::IsServiceAvailable() const {
  return IsServiceAvailable(device_service_status_id);
}

bool CDeviceService::IsServiceAvailable(short status) {
  return (status >= wexpol::kServiceFirstStage && status <= wexpol::kServiceInstalled) ||
         status == wexpol::kServiceAvailable;
}

void CDeviceService::BuildCustonIni(std::string& out) const {
  for (const InstallerOption& option : kOptions) {
    const bool installed = option.component && this->*option.component;
    out.append(option.name).append(installed ? "1\n" : "0\n");
  }
}

bool CDeviceService::IsServerPlatform() {
  const auto version = wexpol::QueryWindowsVersion();
  return version && wexpol::IsServerEdition(*version);
}
