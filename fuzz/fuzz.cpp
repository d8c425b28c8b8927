#include "fuzz/fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "tools/provision/provision.h"
#include "wexpol.h"
#include "wexpol/platform/testing.h"

namespace fuzz {
namespace {

std::vector<const Harness*>& Registered() {
  static std::vector<const Harness*> all;
  return all;
}

class Machine {
 public:
  Machine() {
    std::random_device random;
    folder_ = std::filesystem::temp_directory_path() / ("wexpol-fuzz-" + std::to_string(random()));
    std::filesystem::create_directory(folder_);
    wexpol::RedirectMachine(folder_.wstring());
    std::string error;
    Require(wexpol::CreateDatabase(CFilePaths::GetLocationDB(), error), "a database");
    db_ = wexpol::OpenKeyed(CFilePaths::GetLocationDB(), SQLITE_OPEN_READWRITE);
  }
  ~Machine() {
    sqlite3_close(db_);
    std::filesystem::remove_all(folder_);
  }
  sqlite3* db() const { return db_; }

 private:
  std::filesystem::path folder_;
  sqlite3* db_ = nullptr;
};

}  // namespace

Harness::Harness(const char* its_name, void (*runs)(std::string_view)) : name(its_name), run(runs) {
  Registered().push_back(this);
}

const std::vector<const Harness*>& AllHarnesses() { return Registered(); }

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::string TakeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  std::string line(input.substr(0, end));
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

sqlite3* Database() {
  static const Machine machine;
  return machine.db();
}

}  // namespace fuzz
