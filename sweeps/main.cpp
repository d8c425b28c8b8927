// Runs sweeps over the library: wexpol_sweep [--short] [--seed N] [--size N] [NAME...]. A line of
// figures for each; 1 when a point was bad.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "sweeps/sweep.h"
#include "tests/support/child_process.h"

namespace sweeps {
namespace {

constexpr const char* kNames[kBadCount] = {
    "crash",         "leak",           "lock kept", "transaction open",
    "false success", "silent failure", "mixed",     "undetected damage"};

std::vector<const Sweep*>& AllSweeps() {
  static std::vector<const Sweep*> all;
  return all;
}

bool Run(const Sweep& sweep, const Options& options) {
  Figures figures;
  sweep.run(options, figures);
  long total = 0;
  for (const long count : figures.bad) total += count;
  std::printf("%-12s %ld points, %ld bad:", sweep.name, figures.points, total);
  for (int i = 0; i < kBadCount; ++i) {
    std::printf("%s %ld %s", i ? "," : "", figures.bad[i], kNames[i]);
  }
  if (figures.earlier) std::printf("; %ld with an earlier page", figures.earlier);
  std::printf("; seed %u\n", options.seed);
  std::fflush(stdout);
  return total == 0 && figures.points > 0;
}

}  // namespace

Sweep::Sweep(const char* its_name, long full_size, long brief_size,
             void (*runs)(const Options&, Figures&))
    : name(its_name), full(full_size), brief(brief_size), run(runs) {
  AllSweeps().push_back(this);
}

void Figures::Add(Bad what, const std::string& point) {
  ++bad[what];
  std::fprintf(stderr, "%s: %s\n", kNames[what], point.c_str());
}

}  // namespace sweeps

int main(int argc, char** argv) {
  if (IsChild(argc, argv)) return RunAsChild(argc, argv);
  sweeps::Options options;
  bool brief = false;
  std::vector<std::string_view> names;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--short") {
      brief = true;
    } else if (word == "--seed" && i + 1 < argc) {
      options.seed = static_cast<std::uint32_t>(std::strtoul(argv[++i], nullptr, 10));
    } else if (word == "--size" && i + 1 < argc) {
      options.size = std::strtol(argv[++i], nullptr, 10);
    } else {
      names.push_back(word);
    }
  }
  bool good = true;
  std::size_t run = 0;
  for (const sweeps::Sweep* sweep : sweeps::AllSweeps()) {
    if (!names.empty() && std::ranges::find(names, sweep->name) == names.end()) continue;
    sweeps::Options its = options;
    if (!its.size) its.size = brief ? sweep->brief : sweep->full;
    good &= sweeps::Run(*sweep, its);
    ++run;
  }
  return good && run >= names.size() ? 0 : 1;
}
