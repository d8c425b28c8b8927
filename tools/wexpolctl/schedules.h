// The schedules of the antivirus component in words.

#ifndef WEXPOL_WEXPOLCTL_SCHEDULES_H_
#define WEXPOL_WEXPOLCTL_SCHEDULES_H_

#include <string>

#include "wexpol/antivirus/av_schedule.h"

namespace wexpolctl {

// What the row asks for; a startup delay goes before the other kind.
std::string KindOf(const CAvSchedule& schedule);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_SCHEDULES_H_
