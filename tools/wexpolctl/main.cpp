// wexpolctl: looks after the policy database of an agent.

#include <cstdio>
#include <iostream>

#include "platform/console.h"
#include "tools/wexpolctl/run.h"

int main(int argc, char** argv) {
  platform::UseUtf8Console();
  return wexpolctl::Run(platform::CommandLineArguments(argc, argv), std::cout, std::cerr,
                        platform::IsTerminal(stderr));
}
