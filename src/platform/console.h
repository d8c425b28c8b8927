// The command line and the console of a program, in UTF-8.

#ifndef PLATFORM_CONSOLE_H_
#define PLATFORM_CONSOLE_H_

#include <cstdio>
#include <string>
#include <vector>

namespace platform {

// The arguments after the program's name. Where the system has a wide command line, that is read
// and those of main are not.
std::vector<std::string> CommandLineArguments(int argc, const char* const* argv);

// Texts that are printed from now on are taken as UTF-8.
void UseUtf8Console();

// Whether somebody looks at what is written to `stream`.
bool IsTerminal(std::FILE* stream);

}  // namespace platform

#endif  // PLATFORM_CONSOLE_H_
