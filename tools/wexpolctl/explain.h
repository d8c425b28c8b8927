// The questions of the command "explain", each in a file of its own.

#ifndef WEXPOL_WEXPOLCTL_EXPLAIN_H_
#define WEXPOL_WEXPOLCTL_EXPLAIN_H_

#include "tools/wexpolctl/command.h"

namespace wexpolctl {

ExitCode ExplainProgram(Call& call);
ExitCode ExplainCategories(Call& call);
ExitCode ExplainAlert(Call& call);
ExitCode ExplainSchedule(Call& call);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_EXPLAIN_H_
