// The command line and the console of a program, in UTF-8.

#ifndef WEXPOL_PLATFORM_CONSOLE_H_
#define WEXPOL_PLATFORM_CONSOLE_H_

#include <cstdio>
#include <string>
#include <vector>

namespace wexpol {

// The arguments after the program's name. Where the system has a wide command line, that is read
// and those of main are not.
std::vector<std::string> CommandLineArguments(int argc, const char* const* argv);

// Texts that are printed from now on are taken as UTF-8, and a reader that is gone is an error of
// the stream, not the end of the process.
void PrepareConsole();

// An argument as it is written on the command line of the system's shell.
std::string ShellQuoted(const std::string& argument);

// Whether somebody looks at what is written to `stream`.
bool IsTerminal(std::FILE* stream);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_CONSOLE_H_
