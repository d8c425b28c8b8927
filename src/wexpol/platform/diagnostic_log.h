// The diagnostic log that all processes of the agent write to. Only what a line is named for is
// written, never a password, a token, a header or a command line.

#ifndef WEXPOL_PLATFORM_DIAGNOSTIC_LOG_H_
#define WEXPOL_PLATFORM_DIAGNOSTIC_LOG_H_

#include <string>

#include "wexpol/platform/printf.h"

namespace wexpol {

// Appends one line: date, time, user, program, "WexPol >" and the message. A file that has grown
// past its threshold is first put aside under the name of the one old log.
//
// False when the line was dropped: the file is held by others for more than 2 seconds, or cannot be
// written. Nothing is thrown.
WEXPOL_PRINTF(1, 2) bool LogMessage(const char* format, ...) noexcept;

// The text of a column of the line: 8 characters, padded with blanks or cut.
std::wstring LogColumn(std::wstring text);

// The program's column: the file name in `path`, without folder and extension.
std::wstring ProgramColumn(const std::wstring& path);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_DIAGNOSTIC_LOG_H_
