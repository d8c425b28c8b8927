// The command line and the console of a program, in UTF-8.

#ifndef WEXPOL_PLATFORM_CONSOLE_H_
#define WEXPOL_PLATFORM_CONSOLE_H_

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <streambuf>
#include <string>
#include <vector>

namespace wexpol {

// The arguments after the program's name. Where the system has a wide command line, that is read
// and those of main are not.
std::vector<std::string> CommandLineArguments(int argc, const char* const* argv);

// A reader that is gone is from now on an error of the stream, not the end of the process.
void IgnoreClosedPipes();

// Takes UTF-8 and writes it to the console with each flush, in one call and whatever the console's
// code page. Null where `stream` is no console or takes UTF-8 as it is.
std::unique_ptr<std::streambuf> ConsoleBuffer(std::FILE* stream);

// An argument as it is written on the command line of the system's shell.
std::string ShellQuoted(const std::string& argument);

// Whether somebody looks at what is written to `stream`, how many columns he sees, and whether the
// terminal takes colours.
bool IsTerminal(std::FILE* stream);
std::optional<std::size_t> TerminalWidth(std::FILE* stream);
bool TakesColour(std::FILE* stream);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_CONSOLE_H_
