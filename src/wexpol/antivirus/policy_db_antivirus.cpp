// The facade's operations over the settings of the antivirus component.

#include "wexpol/antivirus/appearance.h"
#include "wexpol/antivirus/av_schedule.h"
#include "wexpol/antivirus/last_scan_summary.h"
#include "wexpol/antivirus/nxb_av_setting.h"
#include "wexpol/policydb/facade.h"

bool CPolicyDB::ClearAndAddNxbAvSettings(const char* json) {
  return ClearAndAdd<CNxbAvSetting>(json);
}
bool CPolicyDB::GetNxbAvSetting(CNxbAvSetting* setting) {
  return wexpol::Ask([&] { return setting && setting->SpecialGetFromDB(handle()); });
}

bool CPolicyDB::AddAppearances(const char* json) { return Add<CAppearance>(json); }
bool CPolicyDB::ClearAppearances() { return Clear<CAppearance>(); }
bool CPolicyDB::GetRecord(CAppearance* appearance) {
  return wexpol::Ask([&] { return appearance && appearance->SpecialGetFromDB(handle()); });
}

bool CPolicyDB::AddAvSchedules(const char* json) { return Add<CAvSchedule>(json); }
bool CPolicyDB::ClearAvSchedules() { return Clear<CAvSchedule>(); }
bool CPolicyDB::GetRecords(std::list<CAvSchedule*>& out) { return List(out); }

bool CPolicyDB::ClearAndAddLastScanSummaries(const char* json) {
  return ClearAndAdd<CLastScanSummary>(json);
}
bool CPolicyDB::GetLastScanSummary(CLastScanSummary* summary) {
  return summary && ReadFirst(*summary);
}
bool CPolicyDB::SetLastScanSummary(CLastScanSummary* summary) {
  return summary && wexpol::Ask([&] { return summary->ReplaceInDB(handle()); });
}
