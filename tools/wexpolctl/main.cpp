// wexpolctl: looks after the policy database of an agent.

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "tools/wexpolctl/run.h"
#include "wexpol/platform/console.h"

namespace {

wexpolctl::Screen ScreenOf(std::FILE* stream) {
  wexpolctl::Screen screen;
  if (const auto width = wexpol::TerminalWidth(stream)) screen.width = *width;
  const char* no_colour = std::getenv("NO_COLOR");
  screen.has_colour = wexpol::TakesColour(stream) && !(no_colour && *no_colour);
  return screen;
}

// While it lives, a stream writes to the console in the console's own characters.
class OnConsole {
 public:
  OnConsole(std::ostream& stream, std::FILE* file)
      : stream_(stream), buffer_(wexpol::ConsoleBuffer(file)) {
    stream_ << std::nounitbuf;
    if (buffer_) former_ = stream_.rdbuf(buffer_.get());
  }
  ~OnConsole() {
    stream_.flush();
    if (buffer_) stream_.rdbuf(former_);
  }
  OnConsole(const OnConsole&) = delete;
  OnConsole& operator=(const OnConsole&) = delete;

 private:
  std::ostream& stream_;
  std::unique_ptr<std::streambuf> buffer_;
  std::streambuf* former_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  wexpol::IgnoreClosedPipes();
  const OnConsole out(std::cout, stdout), err(std::cerr, stderr);
  return wexpolctl::Run(wexpol::CommandLineArguments(argc, argv), std::cout, std::cerr,
                        ScreenOf(stdout), wexpol::IsTerminal(stderr));
}
