// Runs every harness over its corpus and changed copies of it, without a fuzzer:
// wexpol_replay FOLDER [ROUNDS [SEED]]. The folder holds one folder of inputs for each harness.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "fuzz/fuzz.h"

namespace {

using Inputs = std::vector<std::string>;

Inputs Corpus(const std::filesystem::path& folder) {
  Inputs inputs = {""};
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return inputs;
}

// A copy with a few bytes changed, cut out or taken from another input.
std::string Changed(const Inputs& inputs, std::mt19937& random) {
  std::string input = inputs[random() % inputs.size()];
  for (unsigned i = 1 + random() % 4; i > 0; --i) {
    const std::size_t at = random() % (input.size() + 1);
    const std::string& other = inputs[random() % inputs.size()];
    switch (random() % 4) {
      case 0:
        input.insert(at, 1, static_cast<char>(random()));
        break;
      case 1:
        input.erase(at, random() % 9);
        break;
      case 2:
        input.insert(at, other, random() % (other.size() + 1), random() % 30);
        break;
      default:
        if (at < input.size()) input[at] = static_cast<char>(random());
    }
  }
  return input;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const long rounds = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 1000;
  const unsigned long seed = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 1;
  for (const fuzz::Harness* harness : fuzz::AllHarnesses()) {
    const Inputs inputs = Corpus(std::filesystem::path(argv[1]) / harness->name);
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    for (const std::string& input : inputs) harness->run(input);
    for (long i = 0; i < rounds; ++i) harness->run(Changed(inputs, random));
    std::printf("%-10s %zu inputs, 0 bad\n", harness->name,
                inputs.size() + static_cast<std::size_t>(rounds));
  }
}
