// When the antivirus component scans and updates: table "av_schedules".

#ifndef WEXPOL_ANTIVIRUS_AV_SCHEDULE_H_
#define WEXPOL_ANTIVIRUS_AV_SCHEDULE_H_

#include <cstdint>

#include "wexpol/platform/clock.h"
#include "wexpol/records/record.h"

struct tblAvSchedule {
  std::int32_t id = -1;
  std::int32_t av_setting_id = -1;
  bool delay_on_fullscreen_application = false;
  bool enabled = false;
  bool run_in_the_low_power_mode = false;
  bool run_on_computer_startup_if_missed = false;
  wexpol::WideText schedule_name;
  std::int16_t av_schedule_type_id = -1;  // The kind of task, as the console numbers it.
  bool period_available = false;          // Runs every `period_minutes`.
  bool day_interval_available = false;    // Not supported.
  std::int16_t day_interval = -1;
  bool days_of_week_available = false;   // Runs on `days_of_week` at `day_minutes`.
  std::int16_t days_of_week = -1;        // Bit 0 is Sunday, bit 6 Saturday.
  bool day_of_month_available = false;   // Runs on `day_of_month` at `day_minutes`.
  std::int16_t day_of_month = -1;        // 1 to 31.
  bool run_on_computer_startup = false;  // Runs `startup_minutes` after the system has started.
  std::int32_t period_minutes = -1;
  std::int32_t day_minutes = -1;  // Minutes after local midnight.
  std::int32_t startup_minutes = -1;
  bool stop_by_user_enabled = false;
  bool pause_by_user_enabled = false;
  std::int16_t auto_update_state_id = -1;
  bool rerun_update_on_internet_connection = false;
};

// One task of the antivirus component, a scan or an update, and when it runs next.
class WEXPOL_API CAvSchedule : public wexpol::Record<CAvSchedule, tblAvSchedule> {
 public:
  static const wexpol::Table& Table();

  // Seconds until the next run; 0 is now, -1 never. The first of these that is available decides: a
  // startup delay that is not over, the period since the last run, the day of the month, the days
  // of the week.
  long HowLongUntilSchedule() const;

  // The last run of the schedules with a period, binary value "UT" under the agent key: a
  // SYSTEMTIME in local time. Writing sets it to now.
  static bool WriteUpdateTime();
  static bool ReadUpdateTime(SYSTEMTIME& time);

  void SetScheduleName(const wchar_t* name);
  // A null name differs from an empty one.
  bool IsNameDifferent(const wchar_t* name) const;
};

#endif  // WEXPOL_ANTIVIRUS_AV_SCHEDULE_H_
