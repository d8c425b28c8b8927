// The tool as one function.

#ifndef WEXPOL_WEXPOLCTL_RUN_H_
#define WEXPOL_WEXPOLCTL_RUN_H_

#include <ostream>
#include <string>
#include <vector>

#include "tools/wexpolctl/layout.h"

namespace wexpolctl {

// Runs one command line, given without the program's name and in UTF-8; answers the exit code.
// Results go to `out`; what is wrong, with what to do about it, to `err`, and so does progress when
// `err` is a terminal. With --root the process stays redirected to that folder.
int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
        const Screen& screen = {}, bool err_is_terminal = false);

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_RUN_H_
