#include "tools/wexpolctl/schedules.h"

#include <cstdio>

namespace wexpolctl {
namespace {

constexpr char kUnset[] = "an unset ";

std::string Minutes(std::int32_t minutes) {
  return minutes < 0 ? kUnset + std::string("number of min") : std::to_string(minutes) + " min";
}

std::string TimeOfDay(std::int32_t minutes) {
  if (minutes < 0) return kUnset + std::string("time");
  char text[24];
  std::snprintf(text, sizeof text, "%02d:%02d", minutes / 60, minutes % 60);
  return text;
}

std::string DaysOfWeek(std::int16_t mask) {
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::string days;
  for (int day = 0; day < 7; ++day) {
    if (mask >> day & 1) days.append(days.empty() ? "" : " ").append(kDays[day]);
  }
  return days.empty() ? "no day of the week" : days;
}

// Of the kinds besides the startup delay the first that is available, as the agent takes them.
std::string RegularKind(const CAvSchedule& schedule) {
  if (schedule.period_available) return "every " + Minutes(schedule.period_minutes);
  const std::string time = " at " + TimeOfDay(schedule.day_minutes);
  if (schedule.day_of_month_available) {
    const bool unset = schedule.day_of_month < 0;
    return (unset ? kUnset + std::string("day") : "day " + std::to_string(schedule.day_of_month)) +
           " of the month" + time;
  }
  return schedule.days_of_week_available ? DaysOfWeek(schedule.days_of_week) + time : "";
}

}  // namespace

std::string KindOf(const CAvSchedule& schedule) {
  const std::string regular = RegularKind(schedule);
  if (!schedule.run_on_computer_startup) return regular.empty() ? "none" : regular;
  const std::string delay = Minutes(schedule.startup_minutes) + " after start";
  return regular.empty() ? delay : delay + ", " + regular;
}

}  // namespace wexpolctl
