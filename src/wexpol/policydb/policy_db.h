// The session: the one object through which the agent reaches the policy database.

#ifndef WEXPOL_POLICYDB_POLICY_DB_H_
#define WEXPOL_POLICYDB_POLICY_DB_H_

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "wexpol/platform/export.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/policydb/record_classes.h"

struct sqlite3;

namespace wexpol {
class Connection;
}  // namespace wexpol

enum TRANSACTION : int {
  TRANSACTION_BEGIN = 0,
  TRANSACTION_COMMIT = 1,
  TRANSACTION_ROLLBACK = 2,
};

// Owns one connection to `wexpol.db`. To be used by one thread at a time; any number of processes
// may have the file open. Every operation on a closed session answers its failure value, and no
// operation but the constructors throws.
//
// Copies share the connection: the first of them that is closed or destroyed closes it for all.
class WEXPOL_API CPolicyDB {
 public:
  // -------------------------------------------------------------------------------- The session

  // Searches for the file: beside the executable of the process, in the current directory, at the
  // installed location, and at last by restoring the backup copy. IsValidDB() tells whether one
  // was opened. Throws the int 0 when the access code is wrong. (Inline: what is thrown to a host
  // is thrown by the host's own C++ runtime.)
  CPolicyDB(const char* accessCode, int openFlags, int busyTimeoutMs)
      : m_openFlags(openFlags), m_busyTimeoutMs(busyTimeoutMs) {
    if (!IsAccessCode(accessCode)) throw 0;
    OpenFirstFound();
  }
  // Opens exactly the file at `path`.
  CPolicyDB(const char* accessCode, const wchar_t* path, int openFlags, int busyTimeoutMs)
      : m_openFlags(openFlags), m_busyTimeoutMs(busyTimeoutMs) {
    if (!IsAccessCode(accessCode)) throw 0;
    OpenDB(path, openFlags, busyTimeoutMs);
  }
  CPolicyDB(const CPolicyDB& other);
  CPolicyDB& operator=(const CPolicyDB& other);
  ~CPolicyDB();

  // The engine's code; 0 is success. 14 for a path that is null, empty or takes 260 bytes of UTF-8
  // or more. `openFlags` are those of sqlite3_open_v2; a timeout of 0 or less sets none. Close an
  // open session first.
  int OpenDB(const wchar_t* path, int openFlags, int busyTimeoutMs);
  void CloseDB();
  bool IsValidDB() const;

  // Closes, puts the backup's content into the database at the installed location, and opens that
  // with the flags and the timeout of the constructor. True when it could be opened; without a
  // backup it only opens. See "Restore" in docs/hosts.md.
  [[nodiscard]] bool RestoreDB();

  // Whether the whole file can be decrypted and is well formed; reads all of it.
  // An empty file is well formed, too: ask IsProvisioned() beside it.
  bool CheckIntegrity();

  // Whether every table that the operations work on is there: false for a file that is empty,
  // half-made or no policy database.
  bool IsProvisioned();

  // False when the statement fails, also for a commit without a transaction. A transaction runs
  // with synchronous = OFF: a killed process loses nothing, a power cut can damage the file.
  bool Transaction(TRANSACTION step);

  // What went wrong last: {"code": 19,"desc": "..."}, or only "desc" for a fault in a document.
  // Successes leave it.
  const std::string& GetError() const;

  // --------------------------------------------------------------------------------- The tables
  //
  // The operations share these rules:
  //  - ClearAndAddXxx replaces the table with the records of a JSON document, AddXxx adds them. The
  //    document is an array of records, one record, or an object that holds either under the
  //    singular or the plural name of the table. The first record that fails ends the operation
  //    with false and leaves the error object in GetError(); the records before it stay stored.
  //    Neither opens a transaction: bracket them with Transaction() for all or nothing.
  //  - ClearXxx empties the table.
  //  - GetXxx(list, column, value) appends the rows in which `column` has the value, or all rows
  //    for a null column. The records are the caller's to delete, also those of a call that failed.
  //  - Reads of one record are false when there is no such row.

  // The version report of the shared tables; see CGlobalTables.
  void GetGlobalTableJson(std::uint64_t& emptyMask, std::string& out);

  // What tells whether two computers hold the same rows of a table: 40 hexadecimal digits over the
  // columns that a document can fill, whatever the order of the rows. False, and `hash` untouched,
  // when there is no such table or it cannot be read.
  bool GetContentHash(std::string& hash, const char* table);

  // Accounts, devices, logins.
  bool ClearAndAddAccounts(const char* json);
  bool GetRecord(CAccount& account);
  bool ClearAndAddDevices(const char* json);
  bool GetDevices(std::list<CDevice*>& out, const char* column, long value);
  bool AddNics(const char* json);
  bool ClearNics();
  bool GetNics(std::list<CNic*>& out, const char* column, long value);
  bool AddLogins(const char* json);
  bool ClearLogins();
  bool GetLogins(std::list<CLogin*>& out, const char* column, long value);
  bool AddLoginDetails(const char* json);
  bool InsertLoginDetails(const char* json);  // Another name of AddLoginDetails.
  bool ClearLoginDetails();
  bool GetLoginDetails(std::list<CLoginDetail*>& out, const char* column, long value);
  bool AddDeviceGroups(const char* json);
  bool ClearDeviceGroups();

  // Single devices and interfaces. The documents hold one object, for an update also an array of
  // them; there is no envelope. Devices are parsed strictly: see CDevice::ParseJson.
  bool AddDevice(CDevice* device, const char* json);
  // Each update writes what its object names. The first one that fails ends it.
  bool UpdateDevices(const char* json);
  bool UpdateNics(const char* json);
  bool DeleteDevice(const CDevice* device);
  bool DeleteNic(const CNic* nic);
  // With interfaces; see CDevice::SpecialGetFromDB.
  bool GetDevice(CDevice* device, long id);
  // By the address of 6 bytes; see the operations of CNic.
  bool GetNic(CNic* nic, const unsigned char* mac);
  long GetDeviceID(const unsigned char* mac);
  bool DoesMacAddrExist(const unsigned char* mac, long deviceId);

  // The local device: the one whose id this machine has stored; while none is stored, the first
  // with a token, whose id is then stored.
  bool GetThisDevice(CDevice& device);
  // An id that is stored is not checked against the table. False leaves -1.
  bool GetThisDeviceId(long& id);
  bool GetDeviceToken(std::string& token);
  // The credentials of a request to the console; see CAuthInfo::Read.
  bool GetAuthInfo(CAuthInfo& info, bool failIfDisabled, long deviceId, bool allowInviteToken);
  // Stores the id and the installation id of that device, else of the local one, on this machine.
  bool WriteDeviceIdToRegistry(long id);
  // `self` is the local device. The master has the interfaces of `self`.
  bool GetMasterAgentForThisLAN(CDevice& master, CDevice& self);
  // Only when the local device is known and says so.
  bool IsDeviceDetectionEnabled();
  // The local device for an id below 1.
  bool SetDeviceStatus(long id, short status);
  // The name of the local device's group.
  bool GetDeviceGroupName(std::wstring& name);

  // Logins. The names are those of the local device; -1 for one that is not known there.
  bool GetLogin(CLogin& login, long id);
  long GetLoginId(const wchar_t* name);
  // Whether `browserPath` leads to the default browser of the login.
  bool CheckLoginDetails(const wchar_t* loginName, const char* browserPath);
  // Stores the browser of the record.
  bool UpdateLoginDetails(CLoginDetail* detail);

  // Policies and passwords.
  bool ClearAndAddPolicies(const char* json);
  bool GetPolicy(CPolicy& policy, long id);
  // The policy of that login on the local device, -1 when the login has none; of a login that is
  // not known there, the first policy. -1 too when the local device is not known.
  long GetPolicyId(const wchar_t* loginName);
  // `type` is a PASSWORD_TYPE. The int is not used.
  PASSWORD_VALIDATION_RESULT IsValidPassword(const wchar_t* password, int, long policyId,
                                             short type);
  // Notes an attempt to authenticate `tableId`, at the local time given or, where null, now.
  bool SetAuthLog(bool success, std::uint64_t tableId, const SYSTEMTIME* time);
  bool GetAuthLog(CAuthLog& log, std::uint64_t tableId);

  // Services. Those that name no device are asked of the local one.
  bool ClearAndAddServices(const char* json);
  bool AddPolicyServices(const char* json);
  bool ClearPolicyServices();
  bool AddDeviceServices(const char* json);
  bool ClearDeviceServices();
  bool GetDeviceServices(std::list<CDeviceService*>& out, const char* column, long value);
  bool GetDeviceService(CDeviceService& service, short serviceId);
  bool IsDeviceServiceAvailable(long deviceId, short serviceId);
  // Writes a column of the row with that id; see CDeviceService::SetDeviceServiceInfo.
  bool SetDeviceServiceInfo(long id, const char* column, short value);
  // Adds the services; those of all devices when the local one is not known.
  bool GetServicesMarkedForAutoUpgrade(std::set<short>& services);
  // Of the antivirus service.
  bool GetAvComponents(CAvComponents& components);
  // Whether there is a row with status 1 to 3; of the local device for a device id below 0.
  bool IsServiceInstallNeeded(short serviceId, long deviceId);
  // With status 4.
  bool IsServiceInstalled(short serviceId);
  // With status 4, switched on, of an active account.
  bool IsServiceInstalledAndEnabled(short serviceId);
  // Switched on, whatever its status.
  bool IsServiceEnabled(short serviceId, bool requireActiveAccount);
  // With status 1 to 4, or 7.
  bool IsServiceAvailable(short serviceId);

  // Attempts to download and to install a service, counted in the registry; three are allowed. The
  // format names the count, L"SDA%02d" or L"SIA%02d".
  bool ReadServiceAttemptsFromRegistry(short& count, short serviceId, const wchar_t* format);
  bool WriteServiceAttemptsToRegistry(short serviceId, short count, const wchar_t* format);
  // Status 3 starts both counts again; true when one of them could be written. Any other status
  // does nothing and is false.
  bool SetServiceStatus(short serviceId, short statusId);
  // 1 counted, 0 no more attempts, -1 not started by SetServiceStatus or not written.
  int IncrementServiceAttempts(short serviceId, const wchar_t* format);
  int IncrementServiceInstallAttempts(short serviceId);
  int IncrementServiceDownloadAttempts(short serviceId);
  bool HasExceededServiceInstallAttempts(short serviceId);
  bool HasExceededServiceDownloadAttempts(short serviceId);

  // Versions of sub-services.
  bool ClearAndAddDeviceSubserviceVersions(const char* json);
  bool GetDeviceSubserviceVersion(CDeviceSubserviceVersion* record, short subserviceId);
  // Leaves its error in the record.
  bool UpdateDeviceSubserviceVersion(CDeviceSubserviceVersion* record, const char* json);

  // Configuration values. The texts and flags asked for are left alone when there is no value.
  bool AddServiceConfigurations(const char* json);
  bool ClearServiceConfigurations();
  bool GetAllServiceConfigurations(std::list<CServiceConfiguration*>& out);
  // The key "nxb_av_download_url" is answered by the antivirus settings.
  bool GetServiceConfiguration(std::string& value, const char* key, short serviceId) const;
  // True is the value "true", whatever its case.
  bool GetServiceConfiguration(bool& flag, const char* key, short serviceId) const;
  // See CServiceConfiguration::SetServiceConfiguration.
  bool SetServiceConfigurationRaw(const char* value, const char* key, short isUrl, short serviceId);
  // Whether the service is installed by the new flow: some only when "sb_flow_enabled" says so.
  bool IsServiceBridgeInstallFlowEnabled(short serviceId) const;
  bool AddGlobalConfigurations(const char* json);
  bool GetGlobalConfiguration(std::wstring& value, short id);
  bool SetGlobalConfiguration(CGlobalConfiguration& value);

  // Web filter.
  bool ClearAndAddCategories(const char* json);
  bool GetCategories(std::list<CCategory*>& out, const char* column, long value);
  // See the operations of CCategory.
  bool AnyMoviesAndTvCategories(const std::set<std::wstring>& names);
  bool IsPornCategoryPresent(const std::set<std::wstring>& names);
  bool GetNoCacheCategories(std::string& out);
  // True: filtering is set up for the machine, not for each login.
  bool IsFilterMachineOriented();
  bool AddFilterSettings(const char* json);
  bool ClearFilters();
  bool GetFilterSettings(std::list<CFilterSetting*>& out, const char* column, long value);
  bool AddFilterUrls(const char* json);
  bool ClearFilterUrls();
  bool GetFilterUrls(std::list<CFilterUrl*>& out, const char* column, long value);
  // The document is one rule, without an envelope; it is left in `url`.
  bool AddFilterUrl(CFilterUrl* url, const char* json);
  bool AddFilterCategories(const char* json);
  bool ClearFilterCategories();
  bool GetFilterCategories(std::list<CFilterCategory*>& out, const char* column, long value);
  bool AddFilterProxyPorts(const char* json);
  bool ClearFilterProxyPorts();
  // Always fails on a record; see CProxyPort.
  bool ClearAndAddProxyPorts(const char* json);
  bool GetProxyPorts(std::list<CProxyPort*>& out, const char* column, long value);
  bool ClearAndAddSafeSearchParameters(const char* json);
  // All of them, longer addresses before those that they extend. The other arguments are not used.
  bool GetSafeSearchParameters(std::list<CSafeSearchParameter*>& out, const char*, long);
  bool ClearAndAddIcatKeywords(const char* json);
  bool GetIcatKeywords(std::list<CIcatKeyword*>& out, const char* column, long value);
  bool ClearAndAddNeverBlockApps(const char* json);
  bool GetNeverBlockApps(std::list<CNeverBlockApp*>& out, const char* column, long value);
  bool ClearAndAddNeverBlockDomains(const char* json);
  bool GetNeverBlockDomains(std::list<CNeverBlockDomain*>& out, const char* column, long value);
  bool ClearAndAddSwgSettings(const char* json);
  bool GetSwgSettings(CSwgSettings* record);

  // Application control.
  bool ClearAndAddApps(const char* json);
  bool GetApp(CApp& out, long id);
  bool GetApps(std::list<CApp*>& out, short appTypeId);
  bool ClearAndAddAppFiles(const char* json);
  bool AddAppControls(const char* json);
  bool ClearAppControls();
  bool GetAppControls(std::list<CAppControl*>& out, const char* column, long value);
  bool AddAppControlApps(const char* json);
  bool ClearAppControlApps();
  bool GetAppControlApps(std::list<CAppControlApp*>& out, const char* column, long value);
  // True also when there is no such row.
  bool DeleteAppControlAppFromDB(long id);
  // Whether the program is blocked or monitored under the policy of `info.login_id`; see
  // CAppControlInfo. The digest is the MD5 of the file.
  bool IsAppControlled(CAppControlInfo& info, const char* fileName, const unsigned char* md5,
                       int md5Length);
  // False for an object that did not go through IsAppControlled.
  bool IsAppMonitored(CAppControlInfo& info, const char* fileName, const unsigned char* md5,
                      int md5Length);
  // See CAppControlInfo::AddAppChecksumToDB; `flag` is a CONTROL_FLAG.
  bool AddAppChecksumToDB(const unsigned char* md5, int md5Length, short flag);

  // Remote control, restart and support display.
  bool AddRemoteControlSettings(const char* json);
  bool ClearRemoteControlSettings();
  // The setting of the policy of the local device; the id is -1 when there is none.
  long GetRemoteControlSettingIdForThisDevice();
  bool GetRemoteControlSetting(CRemoteControlSetting* record);
  // Of the local device; false while nothing is known.
  bool IsVncConnectionAllowed();
  bool ClearAndAddRestartPolicySettings(const char* json);
  bool GetRestartPolicySettings(CRestartPolicySettings* record);
  bool ClearAndAddSupportDisplaySettings(const char* json);
  bool GetSupportDisplaySettings(CSupportDisplaySettings* record);
  bool IsSupportDisplaySettingsAvailable();

  // Online backup.
  bool ClearAndAddAccountBackupDetails(const char* json);
  bool GetAccountBackupDetails(CAccountBackupDetail* record);
  bool ClearAndAddDeviceBackupDetails(const char* json);
  // The row of that id; where there is none, of that device.
  bool GetDeviceBackupDetails(CDeviceBackupDetail* record, long id);
  bool GetDeviceBackupDetails(std::list<CDeviceBackupDetail*>& out, const char* column, long value);
  bool ClearAndAddDeviceBackupStatistics(const char* json);
  bool GetDeviceBackupStatistics(CDeviceBackupStatistics* record);
  // Whether account, backup details and backup service of the local device all allow it. The text
  // is not used.
  bool IsOnlineBackupAllowed(const wchar_t*);

  // Time.
  bool ClearAndAddTimeZones(const char* json);
  bool ClearAndAddTimeServers(const char* json);
  // The time zone of the local device, else of its account, without names, and the addresses of
  // all time servers in any case. False when one of them cannot be read or decoded, or no zone is
  // assigned and the device is not known; true, and `out` untouched, when no zone is assigned to a
  // known device.
  bool GetTimeInfo(TIME_ZONE_INFORMATION* out, std::set<std::string>& serverUrls);

  // Invitations.
  bool AddInstallInvites(const char* json);
  bool ClearInstallInvites();
  // The document is one invitation, without an envelope.
  bool AddOrUpdateInstallInite(const char* json);
  // For an id below 1, the invitation whose id the registry holds.
  bool GetInstallInvite(CInstallInvite* record, long id);
  // For an id below 1, the link of the newest invitation.
  bool GetLumoraDownloadUrlFromInstallInvite(std::string& out, long id);
  bool ClearAndAddInstallationLogins(const char* json);
  bool GetInstallationLogins(std::list<CInstallationLogin*>& out);

  // Alerts. Times are seconds since 1970 UTC, `eventTypeId` is a kind of local event and
  // `alertEventTypeId` a row of the alert event types.
  bool ClearAndAddAlertEventTypes(const char* json);
  bool ClearAlertEventTypes();
  bool GetAlertEventTypes(std::list<CAlertEventType*>& out, const char* column, long value);
  bool GetAlertEventType(CAlertEventType* type, long id);            // Only an enabled one.
  bool GetAlertEventType(CAlertEventType* type, short eventTypeId);  // The first enabled one.
  bool IsAutoAcknowledgeEnabled(short eventTypeId);                  // By any type, enabled or not.
  bool ClearAndAddSalesAlertOptions(const char* json);
  bool GetSalesAlertOptions(CSalesAlertOption* option);
  // Records an occurrence; null details are those of the type. 1: an alert log was made, to be sent
  // now. 0: nothing is to be sent. -1: a read or a write failed.
  long AddAlertLogBuffer(const CAlertEventType* type, const char* details);
  // The same for every enabled type of a kind of event: appends the ids of the types to send for.
  bool AddAlertLogBuffer(std::vector<long>& toSend, short eventTypeId, const char* details);
  // Adding a log starts its type's check timer anew, and so does reading when there is none.
  bool AddAlertLog(const CAlertLog* log);
  bool GetAlertLogs(std::list<CAlertLog*>& out, long alertEventTypeId);
  bool DeleteAlertLogs(long alertEventTypeId);  // All types' for an id below 1.
  bool DeleteAlertLog(const CAlertLog* log);
  // The engine's code; 101 is success. An id below 1 removes the records of all kinds.
  int AddAlertSent(short eventTypeId);
  int RemoveAlertSent(short eventTypeId);
  bool DidWeSendThisTypeOfAlert(short eventTypeId);
  bool DidWeSendThisTypeOfAlertBeforeThisTime(short eventTypeId, std::int64_t time);
  // Starts the check timer anew. An alert that was sent holds back what occurs during the
  // suppression that starts now.
  bool UpdateAlertCheck(long alertEventTypeId, bool alertSent);
  std::int64_t GetAlertCheckTime(long alertEventTypeId);  // When it was started; -1: never.
  // Seconds until the check timer has run for `period` seconds, 0 when it has; starts it where
  // there is none.
  long GetAlertSecondsRemaining(long alertEventTypeId, std::uint64_t period);
  // The same for every enabled type in which `column` has the value (all types for a null column)
  // and whose kind of event is not in `excluded`, by its id: over its suppression or, for a Windows
  // service without one, its time window. Types with neither get no entry.
  bool GetAlertCheckTimerValues(std::map<long, long>& timers, const char* column, long value,
                                std::set<short>* excluded);

  // Settings of the antivirus component.
  bool ClearAndAddNxbAvSettings(const char* json);
  bool GetNxbAvSetting(CNxbAvSetting* setting);
  bool AddAppearances(const char* json);
  bool ClearAppearances();
  bool GetRecord(CAppearance* appearance);
  bool AddAvSchedules(const char* json);
  bool ClearAvSchedules();
  bool GetRecords(std::list<CAvSchedule*>& out);
  bool ClearAndAddLastScanSummaries(const char* json);
  bool GetLastScanSummary(CLastScanSummary* summary);
  bool SetLastScanSummary(CLastScanSummary* summary);  // Replaces the one that is there.

 protected:
  // Appends the token of the local device, "?dt=...", to an address without a query.
  bool AddUserInfoToUrl(std::string& url);

  // The policy of the local device; -1 when there is none.
  long GetPolicyIdFromDeviceId();

  // A folder of that name, or a pattern that matches a file, counts too.
  static bool DoesFileExist(const wchar_t* path);

 private:
  friend class wexpol::Connection;  // knows the handle of a session

  static bool IsAccessCode(const char* text) noexcept;
  void OpenFirstFound() noexcept;
  int TryInTurn();
  int OpenIfThere(const std::wstring& path, int code);
  sqlite3* handle() const;

  // The operations of every table, in "wexpol/policydb/facade.h".
  template <typename Record>
  bool ClearAndAdd(const char* json);
  template <typename Record>
  bool Add(const char* json);
  template <typename Record>
  bool Clear();
  template <typename Record>
  bool List(std::list<Record*>& out, const char* column = nullptr, long value = 0);
  template <typename Record>
  bool ReadFirst(Record& record);
  template <typename Record>
  bool ReadByKey(Record& record, long key);

  std::shared_ptr<wexpol::Connection> m_db;
  std::string m_error;
  std::int32_t m_openFlags;
  std::int32_t m_busyTimeoutMs;
};

#endif  // WEXPOL_POLICYDB_POLICY_DB_H_
