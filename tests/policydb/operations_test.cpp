// Every operation of the session: which table it works on, that it fails once it is closed, and
// that a question reads the file once.

#include <concepts>
#include <type_traits>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/policydb/connection.h"

namespace {

using S = CPolicyDB;
struct Protected : S {
  using S::AddUserInfoToUrl;
  using S::GetPolicyIdFromDeviceId;
};

// A record of any table: it has every key that one of them requires.
constexpr char kDocument[] =
    R"({"id":1,"account_id":1,"policy_id":1,"device_type_id":1,"operating_system_id":1,"name":"n",
        "device_status_id":1,"locale_id":1,"device_id":1,"subservice_id":1,"threats_found":1,
        "alert_id":1})";

constexpr struct {
  const char* table;
  bool (S::*fill)(const char*);
  bool (S::*clear)() = nullptr;  // Null where filling replaces what is there.
} kFilled[] = {
    {"accounts", &S::ClearAndAddAccounts},
    {"devices", &S::ClearAndAddDevices},
    {"nics", &S::AddNics, &S::ClearNics},
    {"logins", &S::AddLogins, &S::ClearLogins},
    {"login_details", &S::AddLoginDetails, &S::ClearLoginDetails},
    {"login_details", &S::InsertLoginDetails, &S::ClearLoginDetails},
    {"device_groups", &S::AddDeviceGroups, &S::ClearDeviceGroups},
    {"policies", &S::ClearAndAddPolicies},
    {"services", &S::ClearAndAddServices},
    {"policy_services", &S::AddPolicyServices, &S::ClearPolicyServices},
    {"device_services", &S::AddDeviceServices, &S::ClearDeviceServices},
    {"device_subservice_versions", &S::ClearAndAddDeviceSubserviceVersions},
    {"service_configurations", &S::AddServiceConfigurations, &S::ClearServiceConfigurations},
    {"categories", &S::ClearAndAddCategories},
    {"filter_settings", &S::AddFilterSettings, &S::ClearFilters},
    {"filter_urls", &S::AddFilterUrls, &S::ClearFilterUrls},
    {"filter_categories", &S::AddFilterCategories, &S::ClearFilterCategories},
    {"filter_proxy_ports", &S::AddFilterProxyPorts, &S::ClearFilterProxyPorts},
    {"safe_search_parameters", &S::ClearAndAddSafeSearchParameters},
    {"icat_keywords", &S::ClearAndAddIcatKeywords},
    {"never_block_apps", &S::ClearAndAddNeverBlockApps},
    {"never_block_domains", &S::ClearAndAddNeverBlockDomains},
    {"swg_settings", &S::ClearAndAddSwgSettings},
    {"apps", &S::ClearAndAddApps},
    {"app_files", &S::ClearAndAddAppFiles},
    {"app_controls", &S::AddAppControls, &S::ClearAppControls},
    {"app_control_apps", &S::AddAppControlApps, &S::ClearAppControlApps},
    {"premium_remote_control_settings", &S::AddRemoteControlSettings,
     &S::ClearRemoteControlSettings},
    {"restart_policy_settings", &S::ClearAndAddRestartPolicySettings},
    {"support_display_settings", &S::ClearAndAddSupportDisplaySettings},
    {"account_backup_details", &S::ClearAndAddAccountBackupDetails},
    {"device_backup_details", &S::ClearAndAddDeviceBackupDetails},
    {"device_backup_statistics", &S::ClearAndAddDeviceBackupStatistics},
    {"time_zones", &S::ClearAndAddTimeZones},
    {"time_servers", &S::ClearAndAddTimeServers},
    {"install_invites", &S::AddInstallInvites, &S::ClearInstallInvites},
    {"installation_logins", &S::ClearAndAddInstallationLogins},
    {"alert_event_types", &S::ClearAndAddAlertEventTypes},
    {"alert_event_types", &S::ClearAndAddAlertEventTypes, &S::ClearAlertEventTypes},
    {"sales_alert_options", &S::ClearAndAddSalesAlertOptions},
    {"nxb_av_settings", &S::ClearAndAddNxbAvSettings},
    {"appearances", &S::AddAppearances, &S::ClearAppearances},
    {"av_schedules", &S::AddAvSchedules, &S::ClearAvSchedules},
    {"last_scan_summaries", &S::ClearAndAddLastScanSummaries},
};

// What an operation is called with for a parameter of that type.
template <typename T>
struct Argument {
  std::remove_cv_t<std::remove_pointer_t<std::remove_cvref_t<T>>> value{};
  T get() {
    if constexpr (std::is_pointer_v<T>) {
      return &value;
    } else {
      return value;
    }
  }
};
template <std::integral T>
struct Argument<T> {
  T get() { return 1; }
};
template <>
struct Argument<const char*> {
  const char* get() { return kDocument; }
};
template <>
struct Argument<const wchar_t*> {
  const wchar_t* get() { return L"n"; }
};
template <>
struct Argument<const unsigned char*> {
  const unsigned char* get() { return reinterpret_cast<const unsigned char*>(kDocument); }
};

template <typename Answer, typename... Parameters>
Answer Call(S& db, Answer (S::*operation)(Parameters...)) {
  return (db.*operation)(Argument<Parameters>{}.get()...);
}
template <typename Answer, typename... Parameters>
Answer Call(S& db, Answer (S::*operation)(Parameters...) const) {
  return (db.*operation)(Argument<Parameters>{}.get()...);
}

template <typename Answer>
constexpr Answer kFailure = -1;
template <>
constexpr bool kFailure<bool> = false;
template <>
constexpr int kFailure<int> = SQLITE_MISUSE;
template <>
constexpr auto kFailure<PASSWORD_VALIDATION_RESULT> = PASSWORD_DB_ERROR;

template <auto... kOperations>
struct Operations {};

using Lists =
    Operations<&S::GetDevices, &S::GetNics, &S::GetLogins, &S::GetLoginDetails,
               &S::GetDeviceServices, &S::GetAllServiceConfigurations, &S::GetCategories,
               &S::GetFilterSettings, &S::GetFilterUrls, &S::GetFilterCategories, &S::GetProxyPorts,
               &S::GetSafeSearchParameters, &S::GetIcatKeywords, &S::GetNeverBlockApps,
               &S::GetNeverBlockDomains, &S::GetApps, &S::GetAppControls, &S::GetAppControlApps,
               &S::GetInstallationLogins, &S::GetAlertEventTypes, &S::GetRecords,
               static_cast<bool (S::*)(std::list<CDeviceBackupDetail*>&, const char*, long)>(
                   &S::GetDeviceBackupDetails)>;
using Questions = Operations<
    &S::GetDevice, &S::GetNic, &S::GetDeviceID, &S::DoesMacAddrExist, &S::GetThisDevice,
    &S::GetThisDeviceId, &S::GetDeviceToken, &S::GetAuthInfo, &Protected::AddUserInfoToUrl,
    &Protected::GetPolicyIdFromDeviceId, &S::GetMasterAgentForThisLAN, &S::IsDeviceDetectionEnabled,
    &S::GetDeviceGroupName, &S::GetLogin, &S::GetLoginId, &S::CheckLoginDetails, &S::GetPolicy,
    &S::GetPolicyId, &S::IsValidPassword, &S::GetAuthLog, &S::GetDeviceService,
    &S::IsDeviceServiceAvailable, &S::GetServicesMarkedForAutoUpgrade, &S::GetAvComponents,
    &S::IsServiceInstallNeeded, &S::IsServiceInstalled, &S::IsServiceInstalledAndEnabled,
    &S::IsServiceEnabled, &S::IsServiceAvailable, &S::GetDeviceSubserviceVersion,
    &S::GetGlobalConfiguration, &S::GetNoCacheCategories, &S::GetSwgSettings, &S::GetApp,
    &S::IsAppControlled, &S::IsAppMonitored, &S::GetRemoteControlSettingIdForThisDevice,
    &S::GetRemoteControlSetting, &S::IsVncConnectionAllowed, &S::GetRestartPolicySettings,
    &S::GetSupportDisplaySettings, &S::IsSupportDisplaySettingsAvailable,
    &S::GetAccountBackupDetails, &S::GetDeviceBackupStatistics, &S::IsOnlineBackupAllowed,
    &S::GetTimeInfo, &S::GetInstallInvite, &S::GetLumoraDownloadUrlFromInstallInvite,
    &S::IsAutoAcknowledgeEnabled, &S::GetSalesAlertOptions, &S::DidWeSendThisTypeOfAlert,
    &S::DidWeSendThisTypeOfAlertBeforeThisTime, &S::GetAlertCheckTime, &S::GetAlertCheckTimerValues,
    &S::GetNxbAvSetting, &S::GetLastScanSummary, static_cast<bool (S::*)(CAccount&)>(&S::GetRecord),
    static_cast<bool (S::*)(CAppearance*)>(&S::GetRecord),
    static_cast<bool (S::*)(std::string&, const char*, short) const>(&S::GetServiceConfiguration),
    static_cast<bool (S::*)(bool&, const char*, short) const>(&S::GetServiceConfiguration),
    static_cast<bool (S::*)(CDeviceBackupDetail*, long)>(&S::GetDeviceBackupDetails),
    static_cast<bool (S::*)(CAlertEventType*, long)>(&S::GetAlertEventType),
    static_cast<bool (S::*)(CAlertEventType*, short)>(&S::GetAlertEventType)>;
// With what asks no table, or several.
using Writes = Operations<
    &S::IsValidDB, &S::CheckIntegrity, &S::IsProvisioned, &S::Transaction,
    &S::AddGlobalConfigurations, &S::ClearAndAddProxyPorts, &S::AddOrUpdateInstallInite,
    &S::AddDevice, &S::UpdateDevices, &S::UpdateNics, &S::DeleteDevice, &S::DeleteNic,
    &S::WriteDeviceIdToRegistry, &S::SetDeviceStatus, &S::UpdateLoginDetails, &S::SetAuthLog,
    &S::SetDeviceServiceInfo, &S::UpdateDeviceSubserviceVersion, &S::SetServiceConfigurationRaw,
    &S::IsServiceBridgeInstallFlowEnabled, &S::SetGlobalConfiguration, &S::AnyMoviesAndTvCategories,
    &S::IsPornCategoryPresent, &S::AddFilterUrl, &S::DeleteAppControlAppFromDB,
    &S::AddAppChecksumToDB, &S::GetAlertLogs, &S::AddAlertLog, &S::DeleteAlertLogs,
    &S::DeleteAlertLog, &S::AddAlertSent, &S::RemoveAlertSent, &S::UpdateAlertCheck,
    &S::SetLastScanSummary, &S::ReadServiceAttemptsFromRegistry, &S::SetServiceStatus,
    &S::HasExceededServiceInstallAttempts, &S::HasExceededServiceDownloadAttempts,
    static_cast<long (S::*)(const CAlertEventType*, const char*)>(&S::AddAlertLogBuffer),
    static_cast<bool (S::*)(std::vector<long>&, short, const char*)>(&S::AddAlertLogBuffer)>;

class OperationsTest : public PolicyTest {
 protected:
  template <auto... kOperations>
  void ExpectFailures(Operations<kOperations...>) {
    (ExpectFailure<kOperations>(), ...);
  }
  template <auto kOperation>
  void ExpectFailure() {
    const auto answer = Call(db(), kOperation);
    EXPECT_EQ(answer, kFailure<std::remove_const_t<decltype(answer)>>) << __PRETTY_FUNCTION__;
  }

  // Asks each of them, and looks at how much was counted of it.
  template <auto... kOperations, typename Check>
  void AskAndCount(Operations<kOperations...>, Check check) {
    (AskAndCount<kOperations>(check), ...);
  }
  template <auto kOperation, typename Check>
  void AskAndCount(Check check) {
    SCOPED_TRACE(__PRETTY_FUNCTION__);
    counted_ = 0;
    Call(db(), kOperation);
    check();
  }
  static inline int counted_ = 0;

  void FillForQuestions() {
    CDeviceInfo::WriteDeviceID(1L);
    Sql("INSERT INTO accounts VALUES(1,1033,1,1); INSERT INTO policies(id) VALUES(2);"
        "INSERT INTO devices(id,account_id,policy_id,token,device_group_id,time_zone_id) "
        "VALUES(1,1,2,'t',1,0); INSERT INTO device_groups(id) VALUES(1);"
        "INSERT INTO logins(id,device_id,name,policy_id) VALUES(1,1,'n',2);"
        "INSERT INTO service_configurations(id,key,value) VALUES(1,'policy_api_url','u')");
  }

  // Two rows with the ids 1 and 2, listed by their id and all together.
  template <typename Record>
  void ExpectLists(bool (S::*list)(std::list<Record*>&, const char*, long)) {
    SCOPED_TRACE(Record::Table().name());
    Sql(std::string("INSERT INTO ") + Record::Table().name() + "(id) VALUES(1),(2)");
    RecordList<Record> one, all;
    EXPECT_TRUE((db().*list)(one.list, "id", 2));
    ASSERT_EQ(one.list.size(), 1u);
    EXPECT_EQ(one.list.front()->id, 2);
    EXPECT_TRUE((db().*list)(all.list, nullptr, 7));
    EXPECT_EQ(all.list.size(), 2u);
  }

  // None, then the first of two.
  template <typename Record>
  void ExpectFirst(bool (S::*read)(Record*)) {
    SCOPED_TRACE(Record::Table().name());
    Record record;
    EXPECT_FALSE((db().*read)(&record));
    const std::string column(Record::Table().columns().begin()[1].name);
    for (const char* value : {"3", "4"}) {
      Sql(std::string("INSERT INTO ") + Record::Table().name() + "(" + column + ") VALUES(" +
          value + ")");
    }
    EXPECT_FALSE((db().*read)(nullptr));
    EXPECT_TRUE((db().*read)(&record));
    EXPECT_NE(Json(record).find("\"" + column + "\": "), std::string::npos) << Json(record);
    EXPECT_EQ(Json(record).find('4'), std::string::npos) << Json(record);
  }
};

TEST_F(OperationsTest, FillsAndClearsItsOwnTable) {
  std::string count_all = "SELECT 0";
  for (const wexpol::RecordClass* table : wexpol::AllTables()) {
    count_all += std::string("+(SELECT count(*) FROM ") + table->table().name() + ")";
  }
  for (const auto& [table, fill, clear] : kFilled) {
    SCOPED_TRACE(table);
    const std::string count = std::string("SELECT count(*) FROM ") + table;
    EXPECT_TRUE((db().*fill)(kDocument)) << db().GetError();
    EXPECT_EQ(Row(count) + Row(count_all), "11");
    EXPECT_EQ((db().*fill)(kDocument), !clear || fill == &S::ClearAndAddAlertEventTypes);
    EXPECT_EQ(Row(count), "1");
    EXPECT_TRUE(clear ? (db().*clear)() : (db().*fill)("[]"));
    EXPECT_EQ(Row(count_all), "0");
  }
  EXPECT_TRUE(db().AddGlobalConfigurations(kDocument));
  EXPECT_EQ(Row("SELECT count(*) FROM global_configurations"), "1");
}

TEST_F(OperationsTest, ListsByAColumnAndAll) {
  const auto expect = [this](auto... lists) { (ExpectLists(lists), ...); };
  expect(&S::GetDevices, &S::GetNics, &S::GetLogins, &S::GetLoginDetails, &S::GetDeviceServices,
         &S::GetCategories, &S::GetFilterSettings, &S::GetFilterUrls, &S::GetFilterCategories,
         &S::GetProxyPorts, &S::GetIcatKeywords, &S::GetNeverBlockApps, &S::GetNeverBlockDomains,
         &S::GetAppControls, &S::GetAppControlApps, &S::GetAlertEventTypes);
  ExpectLists<CDeviceBackupDetail>(&S::GetDeviceBackupDetails);
}

TEST_F(OperationsTest, ReadsTheFirstRow) {
  const auto expect = [this](auto... reads) { (ExpectFirst(reads), ...); };
  expect(&S::GetSwgSettings, &S::GetRestartPolicySettings, &S::GetSupportDisplaySettings,
         &S::GetAccountBackupDetails, &S::GetDeviceBackupStatistics, &S::GetSalesAlertOptions,
         &S::GetNxbAvSetting);
}

TEST_F(OperationsTest, FailsOnAClosedSession) {
  db().CloseDB();
  for (const auto& [table, fill, clear] : kFilled) {
    EXPECT_FALSE((db().*fill)(kDocument)) << table;
    EXPECT_FALSE((db().*fill)("[]")) << table;
    EXPECT_EQ(db().GetError(), R"({"code": 21,"desc": "bad parameter or other API misuse"})");
    EXPECT_FALSE((db().*fill)("[")) << table;
    EXPECT_EQ(db().GetError(), R"({"desc": "Error parsing json"})") << "told first";
    if (!clear) continue;
    EXPECT_FALSE((db().*clear)()) << table;
  }
  ExpectFailures(Lists{});
  ExpectFailures(Questions{});
  ExpectFailures(Writes{});
  EXPECT_EQ(db().IncrementServiceAttempts(1, L"%02d"), -1);
  EXPECT_EQ(db().IncrementServiceInstallAttempts(1), -1);
  EXPECT_EQ(db().IncrementServiceDownloadAttempts(1), -1);
  // Those that ask the registry, or nobody; and the period of a timer that cannot be started.
  EXPECT_TRUE(db().WriteServiceAttemptsToRegistry(1, 2, L"SIA%02d"));
  EXPECT_TRUE(db().IsFilterMachineOriented());
  EXPECT_EQ(db().GetAlertSecondsRemaining(1, 60), 60);
  std::uint64_t mask = 0;
  std::string report;
  db().GetGlobalTableJson(mask, report);
  EXPECT_EQ(mask, 0x207F8000000u);
}

// A read that begins while none is open locks the file, checks its header and decrypts it.
TEST_F(OperationsTest, AQuestionIsOneRead) {
  FillForQuestions();
  sqlite3* const engine = wexpol::HandleOf(db());
  const auto on_statement = [](unsigned, void* db, void* statement, void*) {
    const bool reads_rows = sqlite3_column_count(static_cast<sqlite3_stmt*>(statement)) > 0;
    const bool is_open = sqlite3_txn_state(static_cast<sqlite3*>(db), nullptr) != SQLITE_TXN_NONE;
    counted_ += reads_rows && !is_open;
    return 0;
  };
  sqlite3_trace_v2(engine, SQLITE_TRACE_STMT, on_statement, engine);
  int all = 0;
  AskAndCount(Questions{}, [&all] {
    EXPECT_LE(counted_, 1);
    all += counted_;
  });
  EXPECT_GT(all, 50);
  CAppControlInfo program;
  std::map<long, long> timers;
  EXPECT_FALSE(db().IsAppControlled(program, "known.exe", nullptr, 0));
  counted_ = 0;
  EXPECT_FALSE(db().IsAppMonitored(program, "known.exe", nullptr, 0));
  EXPECT_EQ(std::exchange(counted_, 0), 1);
  EXPECT_TRUE(db().GetAlertCheckTimerValues(timers, nullptr, 0, nullptr));
  EXPECT_EQ(counted_, 1);
  sqlite3_trace_v2(engine, 0, nullptr, nullptr);
}

// Of what is prepared, the engine asks whether it may.
TEST_F(OperationsTest, AnIdleStatementIsFoundAgain) {
  FillForQuestions();
  sqlite3_set_authorizer(
      wexpol::HandleOf(db()),
      [](void*, int, const char*, const char*, const char*, const char*) {
        return ++counted_, SQLITE_OK;
      },
      nullptr);
  int all = 0;
  AskAndCount(Questions{}, [&all] { all += counted_; });
  EXPECT_GT(all, 100);
  AskAndCount(Questions{}, [] { EXPECT_EQ(counted_, 0); });
}

}  // namespace
