// The classes that operations of the session take and fill, by name; each is complete in a header
// of its own.

#ifndef WEXPOL_POLICYDB_RECORD_CLASSES_H_
#define WEXPOL_POLICYDB_RECORD_CLASSES_H_

class CAccount;
class CAccountBackupDetail;
class CAlertEventType;
class CAlertLog;
class CApp;
class CAppControl;
class CAppControlApp;
class CAppControlInfo;
class CAppearance;
class CAuthInfo;
class CAuthLog;
class CAvComponents;
class CAvSchedule;
class CCategory;
class CDevice;
class CDeviceBackupDetail;
class CDeviceBackupStatistics;
class CDeviceService;
class CDeviceSubserviceVersion;
class CFilterCategory;
class CFilterSetting;
class CFilterUrl;
class CGlobalConfiguration;
class CIcatKeyword;
class CInstallationLogin;
class CInstallInvite;
class CLastScanSummary;
class CLogin;
class CLoginDetail;
class CNeverBlockApp;
class CNeverBlockDomain;
class CNic;
class CNxbAvSetting;
class CPolicy;
class CProxyPort;
class CRemoteControlSetting;
class CRestartPolicySettings;
class CSafeSearchParameter;
class CSalesAlertOption;
class CServiceConfiguration;
class CSupportDisplaySettings;
class CSwgSettings;
enum PASSWORD_VALIDATION_RESULT : int;  // Complete in "wexpol/identity/policy.h".

#endif  // WEXPOL_POLICYDB_RECORD_CLASSES_H_
