#include "wexpol/antivirus/av_schedule.h"

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;
using wexpol::kStrictBool;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblAvSchedule::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblAvSchedule::av_setting_id>("av_setting_id"),
    Column<&tblAvSchedule::delay_on_fullscreen_application>("delay_on_fullscreen_application",
                                                            kStrictBool),
    Column<&tblAvSchedule::enabled>("enabled", kStrictBool),
    Column<&tblAvSchedule::run_in_the_low_power_mode>("run_in_the_low_power_mode", kStrictBool),
    Column<&tblAvSchedule::run_on_computer_startup_if_missed>("run_on_computer_startup_if_missed",
                                                              kStrictBool),
    Column<&tblAvSchedule::schedule_name>("schedule_name"),
    Column<&tblAvSchedule::av_schedule_type_id>("av_schedule_type_id"),
    Column<&tblAvSchedule::period_available>("period_available", kStrictBool),
    Column<&tblAvSchedule::day_interval_available>("day_interval_available", kStrictBool),
    Column<&tblAvSchedule::day_interval>("day_interval"),
    Column<&tblAvSchedule::days_of_week_available>("days_of_week_available", kStrictBool),
    Column<&tblAvSchedule::days_of_week>("days_of_week"),
    Column<&tblAvSchedule::day_of_month_available>("day_of_month_available", kStrictBool),
    Column<&tblAvSchedule::day_of_month>("day_of_month"),
    Column<&tblAvSchedule::run_on_computer_startup>("run_on_computer_startup", kStrictBool),
    Column<&tblAvSchedule::period_minutes>("period_minutes"),
    Column<&tblAvSchedule::day_minutes>("day_minutes"),
    Column<&tblAvSchedule::startup_minutes>("startup_minutes"),
    Column<&tblAvSchedule::stop_by_user_enabled>("stop_by_user_enabled", kStrictBool),
    Column<&tblAvSchedule::pause_by_user_enabled>("pause_by_user_enabled", kStrictBool),
    Column<&tblAvSchedule::auto_update_state_id>("auto_update_state_id"),
    Column<&tblAvSchedule::rerun_update_on_internet_connection>(
        "rerun_update_on_internet_connection", kStrictBool),
};

constexpr wchar_t kUpdateTimeValue[] = L"UT";

}  // namespace

const wexpol::Table& CAvSchedule::Table() {
  static const wexpol::Table& table = *new wexpol::Table("av_schedules", "av_schedule", kColumns);
  return table;
}

bool CAvSchedule::WriteUpdateTime() {
  const SYSTEMTIME now = wexpol::NowLocal();
  return wexpol::WriteBinary(wexpol::AgentKey::kAgent, kUpdateTimeValue, &now, sizeof now);
}

bool CAvSchedule::ReadUpdateTime(SYSTEMTIME& time) {
  return wexpol::ReadBinary(wexpol::AgentKey::kAgent, kUpdateTimeValue, &time, sizeof time);
}

void CAvSchedule::SetScheduleName(const wchar_t* name) { schedule_name = name; }

bool CAvSchedule::IsNameDifferent(const wchar_t* name) const {
  return schedule_name != wexpol::WideText(name);
}
