// wexpolctl: looks after the policy database of an agent.

#include <cstdio>
#include <iostream>

#include "tools/wexpolctl/run.h"
#include "wexpol/platform/console.h"

int main(int argc, char** argv) {
  wexpol::PrepareConsole();
  return wexpolctl::Run(wexpol::CommandLineArguments(argc, argv), std::cout, std::cerr,
                        wexpol::IsTerminal(stderr));
}
