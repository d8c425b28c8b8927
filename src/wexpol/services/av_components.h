// Which components the antivirus service of a device has.

#ifndef WEXPOL_SERVICES_AV_COMPONENTS_H_
#define WEXPOL_SERVICES_AV_COMPONENTS_H_

#include "wexpol/platform/export.h"

struct sqlite3;

// Columns of "device_services", in an order of their own. Unlike those of CDeviceService they are
// all off until they are read.
class WEXPOL_API CAvComponents {
 public:
  // Takes those of a device; false, and nothing changed, when it has no antivirus service.
  bool Get(sqlite3* db, long device_id);

  bool with_web_guard = false;
  bool with_firewall = false;
  bool with_mail_guard = false;
  bool with_identity_guard = false;
  bool with_spam_filter = false;
  bool with_isolation = false;
  bool with_file_guard = false;
  bool with_recovery_media = false;
  bool with_site_rating = false;
  bool with_mail_server_guard = false;
  bool with_portal_server_guard = false;
  bool with_browser_cleaner = false;
  bool with_secure_browser = false;
  bool with_file_eraser = false;
  bool with_app_updater = false;
  bool with_network_scanner = false;
  bool with_dns_guard = false;
  bool with_password_vault = false;
  bool with_camera_guard = false;
};

#endif  // WEXPOL_SERVICES_AV_COMPONENTS_H_
