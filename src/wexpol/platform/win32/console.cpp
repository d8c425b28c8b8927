#include "wexpol/platform/console.h"

#include <windows.h>
#include <io.h>
#include <shellapi.h>

#include <sstream>

#include "wexpol/platform/text.h"
#include "wexpol/platform/win32/handle.h"

namespace wexpol {
namespace {

HANDLE ConsoleOf(std::FILE* stream) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

class WideBuffer : public std::stringbuf {
 public:
  explicit WideBuffer(HANDLE console) : std::stringbuf(std::ios::out), console_(console) {}

 private:
  int sync() override {
    const std::wstring text = Utf8ToWide(str());
    str("");
    DWORD written = 0;
    const auto size = static_cast<DWORD>(text.size());
    const bool done = ::WriteConsoleW(console_, text.data(), size, &written, nullptr) != 0;
    return done && written == size ? 0 : -1;
  }

  HANDLE console_;
};

}  // namespace

std::vector<std::string> CommandLineArguments(int, const char* const*) {
  int count = 0;
  wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  const ScopedHandle owner = OwnMemory(wide);
  std::vector<std::string> arguments;
  for (int i = 1; wide && i < count; ++i) arguments.push_back(WideToUtf8(wide[i]));
  return arguments;
}

void IgnoreClosedPipes() {}

std::unique_ptr<std::streambuf> ConsoleBuffer(std::FILE* stream) {
  DWORD mode;
  const HANDLE console = ConsoleOf(stream);
  if (!::GetConsoleMode(console, &mode)) return nullptr;
  return std::make_unique<WideBuffer>(console);
}

std::string ShellQuoted(const std::string& argument) {
  const bool plain = argument.find_first_of(" &|<>^()%!,;=\t") == argument.npos;
  return plain ? argument : '"' + argument + '"';
}

bool IsTerminal(std::FILE* stream) { return ::_isatty(::_fileno(stream)) != 0; }

std::optional<std::size_t> TerminalWidth(std::FILE* stream) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!::GetConsoleScreenBufferInfo(ConsoleOf(stream), &info)) return std::nullopt;
  // The last column stays empty: a line that fills it would begin the next one.
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left);
}

// It would have to be switched on for all programs of the console.
bool TakesColour(std::FILE*) { return false; }

}  // namespace wexpol
