// The operations that faults are put under: each family of the facade.

#include <utility>

#include "sweeps/faults.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/document.h"

namespace sweeps {
namespace {

constexpr unsigned char kDigest[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
// What a device must tell of itself.
constexpr char kNewDevice[] =
    R"({"id": 70009, "account_id": 1, "policy_id": 501, "device_type_id": 1, "name": "NEW",
        "operating_system_id": 61, "device_status_id": 1, "is_master": false,
        "allow_remote_connection": true, "device_detection_enabled": true})";
constexpr char kChangedDevice[] =
    R"([{"id": 70001, "account_id": 1, "policy_id": 501, "device_type_id": 1, "name": "CHANGED",
         "operating_system_id": 61, "device_status_id": 1, "is_master": false,
         "allow_remote_connection": true, "device_detection_enabled": true}])";
constexpr unsigned char kMac[6] = {2, 0, 0xa1, 0xb2, 0xc3, 1};

std::string Show(const std::string& text) { return text; }
std::string Show(const std::wstring& text) { return {text.begin(), text.end()}; }
std::string Show(long number) { return std::to_string(number); }
std::string Show(const CAuthInfo& info) {
  return Show(std::wstring(info.token ? info.token.get() : L"none")) + Show(info.account_id);
}
std::string Show(const CAvComponents& components) { return Show(components.with_web_guard + 1L); }
std::string Show(const CAppControlInfo& info) {
  return Show(info.app_id * 10L + info.control_flag);
}
template <typename Record>
auto Show(const Record& record)
    -> decltype(record.GenerateJson(std::declval<std::string&>()), std::string()) {
  std::string json;
  record.GenerateJson(json);
  return json;
}
template <typename Value>
auto Show(const Value& values)
    -> decltype(values.begin(), values.size(),
                std::string()) requires(!std::is_convertible_v<Value, std::string_view> &&
                                        !std::is_same_v<Value, std::wstring>) {
  std::string all = "of " + std::to_string(values.size());
  for (const auto& value : values) {
    if constexpr (requires { value.first; }) {
      all += ' ' + Show(value.first) + '=' + Show(value.second);
    } else if constexpr (std::is_pointer_v<std::decay_t<decltype(value)>>) {
      all += Show(*value);
      delete value;
    } else {
      all += ' ' + Show(value);
    }
  }
  return all;
}

// A question that answers a flag, an id or a code.
Operation Asks(const char* name, Leaves leaves, long (*ask)(CPolicyDB&)) {
  return {name, leaves,
          [ask](CPolicyDB& db) { return Show(UnderFaults([&] { return ask(db); })); }};
}
Operation Asks(const char* name, long (*ask)(CPolicyDB&)) {
  return Asks(name, Leaves::kWhole, ask);
}

// A question that fills an object.
template <typename Out>
Operation Fills(const char* name, bool (*ask)(CPolicyDB&, Out&), Leaves leaves = Leaves::kWhole) {
  return {name, leaves, [ask](CPolicyDB& db) {
            Out out;
            const bool filled = UnderFaults([&] { return ask(db, out); });
            std::string all = Show(out);
            return filled ? all : std::string("0");
          }};
}

// A list of records, which are the caller's.
template <typename Record>
Operation Lists(const char* name, bool (CPolicyDB::*list)(std::list<Record*>&, const char*, long)) {
  return {name, Leaves::kWhole, [list](CPolicyDB& db) {
            std::list<Record*> out;
            const bool all = UnderFaults([&] { return (db.*list)(out, nullptr, 0); });
            const std::string text = Show(out);
            return all ? text : std::string("0");
          }};
}

// The answer of a synchronisation, which tells why it failed.
std::string Synchronised(bool done, const std::string& error) {
  return done ? "1" : error.empty() ? "silent" : "0";
}

Operation Synchronises(const wexpolctl::SyncTable& table) {
  return {std::string("replace ") + table.name(), Leaves::kReplaces, [&table](CPolicyDB& db) {
            const std::string& document = Samples().at(table.name());
            std::string error;
            // Some go round the session, and so may throw.
            const bool done = UnderFaults([&] {
              try {
                return table.replace(db, document.c_str(), error);
              } catch (...) {
                error = "thrown";
                return false;
              }
            });
            return Synchronised(done, error);
          }};
}

std::string SynchroniseAll(CPolicyDB& db) {
  const std::string document = GenerationDocument(5);
  const bool done = UnderFaults([&] { return StoreGeneration(db, document.c_str()); });
  if (!done) db.Transaction(TRANSACTION_ROLLBACK);
  return Synchronised(done, "told by the step that failed");
}

bool ParseAlertType(CAlertEventType& type) {
  wexpol::Document document;
  return document.Parse(R"({"id": 203, "alert_id": 20, "event_type_id": 20, "enabled": true,
                           "threshold": 1, "threshold_unit_id": 1, "time_window": 10})") &&
         type.ParseJson(document.root());
}

std::vector<Operation> AllOperations() {
  using L = Leaves;
  std::vector<Operation> all = {
      Asks("open", [](CPolicyDB&) -> long {
        CPolicyDB db(kAccessCode, kReadWrite, 100);
        return db.IsValidDB() && db.IsProvisioned();
      }),
      // Answers whether the file could be opened, whatever became of the restore.
      Asks("restore", L::kLearns, [](CPolicyDB& db) -> long { return db.RestoreDB(); }),
      Asks("check", [](CPolicyDB& db) -> long { return db.CheckIntegrity(); }),
      {"synchronise in a transaction", L::kWhole, SynchroniseAll},
      {"version report", L::kWhole,
       [](CPolicyDB& db) {
         std::string out;
         UnderFaults([&] {
           std::uint64_t mask = 0;
           db.GetGlobalTableJson(mask, out);
         });
         return std::string("1");
       }},
      {"add device", L::kWhole,
       [](CPolicyDB& db) {
         CDevice device;
         const bool done = UnderFaults([&] { return db.AddDevice(&device, kNewDevice); });
         return Synchronised(done, db.GetError());
       }},
      Asks("update devices",
           [](CPolicyDB& db) -> long { return db.UpdateDevices(kChangedDevice); }),
      Asks("update nics",
           [](CPolicyDB& db) -> long {
             return db.UpdateNics(R"([{"id": 1, "mac": "0200a1b2c301", "ipv4": "192.0.2.9"}])");
           }),
      {"delete device", L::kWhole,
       [](CPolicyDB& db) {
         CDevice device;
         device.id = 70003;
         return Show(UnderFaults([&]() -> long { return db.DeleteDevice(&device); }));
       }},
      Fills<CDevice>("local device",
                     [](CPolicyDB& db, CDevice& out) { return db.GetThisDevice(out); }),
      Fills<CDevice>("device", [](CPolicyDB& db, CDevice& out) { return db.GetDevice(&out, 70001); }),
      Fills<std::string>("token",
                         [](CPolicyDB& db, std::string& out) { return db.GetDeviceToken(out); }),
      Fills<CAuthInfo>("credentials",
                       [](CPolicyDB& db, CAuthInfo& out) {
                         return db.GetAuthInfo(out, true, -1, true) && !out.account_disabled;
                       }),
      Fills<CDevice>("master",
                     [](CPolicyDB& db, CDevice& out) {
                       CDevice self;
                       return db.GetMasterAgentForThisLAN(out, self);
                     }),
      Fills<std::wstring>(
          "group", [](CPolicyDB& db, std::wstring& out) { return db.GetDeviceGroupName(out); }),
      Asks("set status", [](CPolicyDB& db) -> long { return db.SetDeviceStatus(70001, 7); }),
      Fills<CNic>("interface", [](CPolicyDB& db, CNic& out) { return db.GetNic(&out, kMac); }),
      Asks("device of interface", [](CPolicyDB& db) { return db.GetDeviceID(kMac); }),
      Asks("login", [](CPolicyDB& db) { return db.GetLoginId(L"OFFICE\\anna"); }),
      Asks("browser",
           [](CPolicyDB& db) -> long {
             return db.CheckLoginDetails(L"OFFICE\\anna", "C:\\Programs\\firefox.exe");
           }),
      Fills<CPolicy>("policy",
                     [](CPolicyDB& db, CPolicy& out) { return db.GetPolicy(out, 501); }),
      Asks("policy of login", [](CPolicyDB& db) { return db.GetPolicyId(L"OFFICE\\anna"); }),
      Asks("password",
           [](CPolicyDB& db) -> long {
             const int result = db.IsValidPassword(L"sample-clear", 0, 502, PASSWORD_TYPE_OVERRIDE);
             return result == PASSWORD_VALID ? 1 : result == PASSWORD_INVALID ? 2 : 0;
           }),
      {"encrypted password", L::kWhole,
       [](CPolicyDB&) {
         CPolicy policy;
         const std::wstring key = L"0123456789abcdef01234567";
         UnderFaults([&] { return policy.SetProxyServerPasswordEncrypted(L"AAAAAAAAAAA=", key); });
         return std::string("1");
       }},
      Asks("authentication", [](CPolicyDB& db) -> long { return db.SetAuthLog(true, 7, nullptr); }),
      Fills<CDeviceService>("service",
                            [](CPolicyDB& db, CDeviceService& out) {
                              return db.GetDeviceService(out, 1);
                            }),
      Fills<CAvComponents>("components", [](CPolicyDB& db, CAvComponents& out) {
        return db.GetAvComponents(out);
      }),
      Fills<std::set<short>>("upgrades",
                             [](CPolicyDB& db, std::set<short>& out) {
                               return db.GetServicesMarkedForAutoUpgrade(out);
                             }),
      Asks("installed", [](CPolicyDB& db) -> long { return db.IsServiceInstalledAndEnabled(1); }),
      Asks("attempts", [](CPolicyDB& db) -> long { return db.SetServiceStatus(1, 3); }),
      Fills<std::string>("configuration",
                         [](CPolicyDB& db, std::string& out) {
                           return db.GetServiceConfiguration(out, "policy_api_url", 0);
                         }),
      Asks("set configuration",
           [](CPolicyDB& db) -> long {
             return db.SetServiceConfigurationRaw("https://new.example.net/", "policy_api_url", 1,
                                                  0);
           }),
      Fills<std::string>("uncached categories", [](CPolicyDB& db, std::string& out) {
        return db.GetNoCacheCategories(out);
      }),
      Asks("categories",
           [](CPolicyDB& db) -> long {
             const std::set<std::wstring> names = {L"Adult", L"Streaming", L"Pornography"};
             return db.IsPornCategoryPresent(names) || db.AnyMoviesAndTvCategories(names);
           }),
      Fills<CAppControlInfo>("decision",
                             [](CPolicyDB& db, CAppControlInfo& out) {
                               out.login_id = 9001;
                               return db.IsAppControlled(out, "patience.exe", kDigest, 16);
                             },
                             L::kLearns),
      Fills<CAppControlInfo>("monitoring",
                             [](CPolicyDB& db, CAppControlInfo& out) {
                               out.login_id = 9001;
                               db.IsAppControlled(out, "remote.exe", kDigest, 16);
                               return db.IsAppMonitored(out, "remote.exe", kDigest, 16);
                             },
                             L::kLearns),
      Asks("learn", [](CPolicyDB& db) -> long { return db.AddAppChecksumToDB(kDigest, 16, 1); }),
      Asks("remote control",
           [](CPolicyDB& db) { return db.GetRemoteControlSettingIdForThisDevice(); }),
      Asks("online backup",
           [](CPolicyDB& db) -> long { return db.IsOnlineBackupAllowed(nullptr); }),
      Fills<std::set<std::string>>("time",
                                   [](CPolicyDB& db, std::set<std::string>& out) {
                                     TIME_ZONE_INFORMATION zone;
                                     // The answer does not depend on the servers.
                                     std::set<std::string> servers;
                                     if (!db.GetTimeInfo(&zone, servers)) return false;
                                     out.insert("known");
                                     return true;
                                   }),
      Asks("invitation",
           [](CPolicyDB& db) -> long {
             return db.AddOrUpdateInstallInite(R"({"id": 3002, "token": "t", "row_version": 9})");
           }),
      Fills<std::string>("link",
                         [](CPolicyDB& db, std::string& out) {
                           return db.GetLumoraDownloadUrlFromInstallInvite(out, -1);
                         }),
      {"occurrence", L::kNothing,
       [](CPolicyDB& db) {
         CAlertEventType type;
         if (!ParseAlertType(type)) return std::string("no type");
         return Show(UnderFaults([&] { return db.AddAlertLogBuffer(&type, "stopped"); }));
       }},
      Fills<std::vector<long>>("occurrences",
                               [](CPolicyDB& db, std::vector<long>& out) {
                                 return db.AddAlertLogBuffer(out, 20, "stopped");
                               },
                               L::kNothing),
      {"alert log", L::kParts,
       [](CPolicyDB& db) {
         CAlertEventType type;
         if (!ParseAlertType(type)) return std::string("no type");
         const CAlertLog log(&type, "stopped", 1, 2);
         return Show(UnderFaults([&]() -> long { return db.AddAlertLog(&log); }));
       }},
      Asks("remaining", L::kLearns,
           [](CPolicyDB& db) { return db.GetAlertSecondsRemaining(203, 600); }),
      Fills<std::map<long, long>>("timers",
                                  [](CPolicyDB& db, std::map<long, long>& out) {
                                    return db.GetAlertCheckTimerValues(out, nullptr, 0, nullptr);
                                  },
                                  L::kParts),
      Asks("sent alert",
           [](CPolicyDB& db) -> long { return db.AddAlertSent(20) == SQLITE_DONE; }),
      Asks("restart timer", [](CPolicyDB& db) -> long { return db.UpdateAlertCheck(203, true); }),
      Lists("list devices", &CPolicyDB::GetDevices),
      Lists("list logins", &CPolicyDB::GetLogins),
      Lists("list rules", &CPolicyDB::GetAppControls),
      Fills<std::list<CAvSchedule*>>(
          "list schedules",
          [](CPolicyDB& db, std::list<CAvSchedule*>& out) { return db.GetRecords(out); }),
  };
  for (const wexpolctl::SyncTable& table : wexpolctl::SyncTables()) {
    all.push_back(Synchronises(table));
  }
  return all;
}

}  // namespace

const std::vector<Operation>& Operations() {
  static const auto operations = AllOperations();
  return operations;
}

}  // namespace sweeps
