#include "wexpol/platform/console.h"

#include <windows.h>
#include <io.h>
#include <shellapi.h>

#include <memory>

#include "wexpol/platform/text.h"

namespace wexpol {

std::vector<std::string> CommandLineArguments(int, const char* const*) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&::LocalFree)> wide(
      ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; wide && i < count; ++i) arguments.push_back(WideToUtf8(wide.get()[i]));
  return arguments;
}

void UseUtf8Console() { ::SetConsoleOutputCP(CP_UTF8); }

bool IsTerminal(std::FILE* stream) { return ::_isatty(::_fileno(stream)) != 0; }

}  // namespace wexpol
