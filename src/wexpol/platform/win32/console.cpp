#include "wexpol/platform/console.h"

#include <windows.h>
#include <io.h>
#include <shellapi.h>

#include "wexpol/platform/text.h"
#include "wexpol/platform/win32/handle.h"

namespace wexpol {

std::vector<std::string> CommandLineArguments(int, const char* const*) {
  int count = 0;
  wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  const ScopedHandle owner = OwnMemory(wide);
  std::vector<std::string> arguments;
  for (int i = 1; wide && i < count; ++i) arguments.push_back(WideToUtf8(wide[i]));
  return arguments;
}

void PrepareConsole() { ::SetConsoleOutputCP(CP_UTF8); }

std::string ShellQuoted(const std::string& argument) {
  const bool plain = argument.find_first_of(" &|<>^()%!,;=\t") == argument.npos;
  return plain ? argument : '"' + argument + '"';
}

bool IsTerminal(std::FILE* stream) { return ::_isatty(::_fileno(stream)) != 0; }

}  // namespace wexpol
