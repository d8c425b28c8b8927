// An agent process in miniature: what a host does with the library from its start to its stop.
//
//   agent FOLDER DOCUMENTS
//
// FOLDER takes the place of the machine's locations and registry and holds wexpol.db, made by
// "wexpolctl --root FOLDER init". DOCUMENTS holds the console's documents, one per table.

#include <wexpol.h>
#include <wexpol/platform/testing.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <list>
#include <memory>
#include <string>

namespace {

// A table, and the operations that replace it.
struct Table {
  const char* name;
  bool (CPolicyDB::*clear)();  // Null where adding replaces.
  bool (CPolicyDB::*add)(const char* json);
};

constexpr Table kTables[] = {
    {"accounts", nullptr, &CPolicyDB::ClearAndAddAccounts},
    {"policies", nullptr, &CPolicyDB::ClearAndAddPolicies},
    {"policy_services", &CPolicyDB::ClearPolicyServices, &CPolicyDB::AddPolicyServices},
    {"devices", nullptr, &CPolicyDB::ClearAndAddDevices},
    {"logins", &CPolicyDB::ClearLogins, &CPolicyDB::AddLogins},
    {"device_services", &CPolicyDB::ClearDeviceServices, &CPolicyDB::AddDeviceServices},
    {"service_configurations", &CPolicyDB::ClearServiceConfigurations,
     &CPolicyDB::AddServiceConfigurations},
    {"apps", nullptr, &CPolicyDB::ClearAndAddApps},
    {"app_files", nullptr, &CPolicyDB::ClearAndAddAppFiles},
    {"app_controls", &CPolicyDB::ClearAppControls, &CPolicyDB::AddAppControls},
    {"app_control_apps", &CPolicyDB::ClearAppControlApps, &CPolicyDB::AddAppControlApps},
    {"alert_event_types", nullptr, &CPolicyDB::ClearAndAddAlertEventTypes},
    {"av_schedules", &CPolicyDB::ClearAvSchedules, &CPolicyDB::AddAvSchedules},
};

const char* YesNo(bool yes) { return yes ? "yes" : "no"; }

// A damaged file is replaced by the backup. False when there is nothing left to work with.
bool OpenOrRestore(CPolicyDB& db) {
  if (db.IsValidDB() && db.CheckIntegrity()) return true;
  std::printf("database: damaged or missing, restoring\n");
  return db.RestoreDB() && db.CheckIntegrity();
}

// All documents or none.
bool Synchronise(CPolicyDB& db, const std::string& documents) {
  if (!db.Transaction(TRANSACTION_BEGIN)) return false;
  for (const Table& table : kTables) {
    std::ifstream file(documents + "/" + table.name + ".json", std::ios::binary);
    const std::string json((std::istreambuf_iterator<char>(file)), {});
    const bool stored =
        file && (!table.clear || (db.*table.clear)()) && (db.*table.add)(json.c_str());
    if (stored) continue;
    std::printf("synchronisation: %s refused: %s\n", table.name, db.GetError().c_str());
    db.Transaction(TRANSACTION_ROLLBACK);
    return false;
  }
  return db.Transaction(TRANSACTION_COMMIT);
}

void AskAtStart(CPolicyDB& db) {
  long device_id = -1;
  CAuthInfo credentials;
  std::string url;
  db.GetThisDeviceId(device_id);
  std::printf("this device: %ld\n", device_id);
  // The header itself is a secret.
  std::printf("requests carry a token: %s\n",
              YesNo(db.GetAuthInfo(credentials, true, device_id, true)));
  std::printf("antivirus installed and enabled: %s\n", YesNo(db.IsServiceInstalledAndEnabled(1)));
  std::printf("console address known: %s\n",
              YesNo(db.GetServiceConfiguration(url, "policy_api_url", 0)));
}

void OnProcessStart(CPolicyDB& db, const char* file_name) {
  unsigned char digest[16] = {};  // An agent takes the MD5 of the file.
  std::strncpy(reinterpret_cast<char*>(digest), file_name, sizeof digest);
  std::list<CLogin*> logins;
  if (!db.GetLogins(logins, "is_admin", 0) || logins.empty()) return;
  CAppControlInfo info;
  info.login_id = logins.front()->id;
  for (CLogin* login : logins) delete login;
  const bool controlled = db.IsAppControlled(info, file_name, digest, sizeof digest);
  const char* decision = !controlled                               ? "not controlled"
                         : info.control_flag == CONTROL_FLAG_BLOCK ? "blocked"
                                                                   : "monitored";
  std::printf("%s: %s\n", file_name, decision);
}

void RaiseAlert(CPolicyDB& db, short kind_of_event) {
  CAlertEventType type;
  if (!db.GetAlertEventType(&type, kind_of_event)) return;
  const long result = db.AddAlertLogBuffer(&type, "found by the example");
  std::printf("alert %ld: %s\n", static_cast<long>(type.id), result == 1 ? "to be sent" : "held");
  if (result == 1) db.UpdateAlertCheck(type.id, true);
}

void ArmScanTimer(CPolicyDB& db) {
  std::list<CAvSchedule*> schedules;
  db.GetRecords(schedules);
  for (CAvSchedule* schedule : schedules) {
    const std::unique_ptr<CAvSchedule> owner(schedule);
    std::printf("schedule %ld is due in %ld s\n", static_cast<long>(schedule->id),
                schedule->HowLongUntilSchedule());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: agent FOLDER DOCUMENTS\n");
    return 2;
  }
  const std::string folder = argv[1];
  wexpol::RedirectMachine(std::wstring(folder.begin(), folder.end()));
  CPolicyDB db("60718", SQLITE_OPEN_READWRITE, 2000);
  if (!OpenOrRestore(db)) {
    std::fprintf(stderr, "no database: run 'wexpolctl --root %s init'\n", argv[1]);
    return 3;
  }
  if (!Synchronise(db, argv[2])) return 1;
  std::printf("synchronised %d tables\n", static_cast<int>(std::size(kTables)));
  AskAtStart(db);
  OnProcessStart(db, "patience.exe");
  OnProcessStart(db, "unknown.exe");
  RaiseAlert(db, 4);
  RaiseAlert(db, 4);
  ArmScanTimer(db);
  db.CloseDB();
  return 0;
}
