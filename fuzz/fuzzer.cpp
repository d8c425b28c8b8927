// The entry for clang's fuzzer: wexpol_fuzz --harness=NAME CORPUS... [-max_total_time=SECONDS]

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fuzz/fuzz.h"

namespace {

const fuzz::Harness* harness = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  constexpr char kOption[] = "--harness=";
  for (int i = 1; i < *argc; ++i) {
    for (const fuzz::Harness* each : fuzz::AllHarnesses()) {
      if ((*argv)[i] == std::string(kOption) + each->name) harness = each;
    }
  }
  fuzz::Require(harness, "--harness=NAME names a harness");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  harness->run({reinterpret_cast<const char*>(data), size});
  return 0;
}
