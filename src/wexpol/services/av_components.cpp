#include "wexpol/services/av_components.h"

#include "wexpol/records/query.h"
#include "wexpol/records/record.h"
#include "wexpol/records/table.h"
#include "wexpol/services/service.h"

namespace {

using wexpol::Column;
using Row = CAvComponents;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&Row::with_web_guard>("with_web_guard"),
    Column<&Row::with_firewall>("with_firewall"),
    Column<&Row::with_mail_guard>("with_mail_guard"),
    Column<&Row::with_identity_guard>("with_identity_guard"),
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
};

const wexpol::Table& Components() {
  static const wexpol::Table& table = *new wexpol::Table(
      "device_services", "", kColumns, {.condition = " WHERE device_id=? AND service_id=?"});
  return table;
}

}  // namespace

bool CAvComponents::Get(sqlite3* db, long device_id) {
  wexpol::Statement select(db, Components().select(), device_id, wexpol::kAntivirusService);
  if (!select.StepRow()) return false;
  *this = CAvComponents();
  wexpol::CopyRow(Components(), this, select.get());
  return true;
}
