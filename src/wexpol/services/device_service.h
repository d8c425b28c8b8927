// The services of each device and their installation: table "device_services".

#ifndef WEXPOL_SERVICES_DEVICE_SERVICE_H_
#define WEXPOL_SERVICES_DEVICE_SERVICE_H_

#include <cstdint>
#include <set>
#include <string>

#include "wexpol/records/record.h"

namespace wexpol {

// What device_service_status_id says, as far as it is understood here. From the first to the last
// of the stages the installation is still to be done.
enum ServiceStatus : std::int16_t {
  kServiceFirstStage = 1,
  kServiceLastStage = 3,  // Also where the attempts to install are counted anew.
  kServiceInstalled = 4,
  kServiceAvailable = 7,
};

}  // namespace wexpol

struct tblDeviceService {
  std::int32_t id = -1;
  std::int32_t device_id = -1;
  std::int16_t service_id = -1;
  std::int16_t device_service_status_id = -1;  // See ServiceStatus.
  bool remove_competitive_products = false;    // The installer removes other security products.
  bool enabled = false;
  std::int16_t upgrade_action_id = -1;  // 1 is no automatic upgrade, anything else is one.
  // Components of the installer; as set here the console installs the antivirus.
  bool with_firewall = false;
  bool with_mail_guard = false;
  bool with_identity_guard = true;
  bool with_web_guard = true;
  bool with_spam_filter = false;
  bool with_isolation = true;
  bool with_file_guard = true;
  bool with_recovery_media = true;
  bool with_site_rating = false;
  bool with_mail_server_guard = false;
  bool with_portal_server_guard = false;
  bool with_browser_cleaner = false;
  bool with_secure_browser = false;
  bool with_file_eraser = true;
  bool with_app_updater = false;
  bool with_network_scanner = false;
  bool with_dns_guard = false;
  bool with_password_vault = false;
  bool with_camera_guard = false;
  wexpol::Text management_url;  // This and the next are handed to the installer.
  wexpol::Text installation_token;
};

// One service on one device: how far its installation is, whether it is on, and what its installer
// is told.
class WEXPOL_API CDeviceService : public wexpol::Record<CDeviceService, tblDeviceService> {
 public:
  CDeviceService() = default;
  // A new row that the database does not know yet.
  CDeviceService(short service, short status, bool is_enabled);

  static const wexpol::Table& Table();

  // Takes the row of a service of a device. False, and the record untouched, when there is none.
  bool Get(sqlite3* db, long device, short service);
  // Whether there is one.
  static bool IsDeviceServiceAvailable(sqlite3* db, long device, short service);
  // Writes a column of the row with that id. False for a column that the table does not have, but
  // not for an id.
  static bool SetDeviceServiceInfo(sqlite3* db, long id, const char* column, short value);

  // Adds the services to be upgraded automatically, of that device or, where it is 0 or less, of
  // all. False when the statement fails.
  static bool GetServicesMarkedForAutoUpgrade(sqlite3* db, std::set<short>& services, long device);
  // There is nothing to ask without a database: false.
  static bool GetServicesMarkedForAutoUpgrade(std::set<short>&, long) { return false; }

  // Status 1 to 4. Unlike the session's question of this name this counts an installed service.
  bool IsServiceInstallNeeded() const;
  // Status 1 to 4, or 7.
  bool IsServiceAvailable() const;
  static bool IsServiceAvailable(short status);

  // Appends the options of the antivirus installer, one "opt_...=0" or 1 and a line feed each.
  void BuildCustonIni(std::string& out) const;

  // Whether this Windows is a server edition.
  static bool IsServerPlatform();
};

#endif  // WEXPOL_SERVICES_DEVICE_SERVICE_H_
