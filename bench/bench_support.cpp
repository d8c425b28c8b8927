#include "bench/bench_support.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tools/provision/provision.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/testing.h"

namespace bench {
namespace {

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

double Seconds(const Contender& contender, int repeats) {
  double total = 0;
  for (int i = 0; i < repeats; ++i) {
    if (contender.prepare) contender.prepare();
    const auto start = std::chrono::steady_clock::now();
    contender.run();
    total += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  return total / repeats;
}

// Without a preparation the clock is read once around all calls, so that it costs nothing.
double SecondsOfMany(const Contender& contender, int repeats) {
  if (contender.prepare) return Seconds(contender, repeats);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < repeats; ++i) contender.run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / repeats;
}

}  // namespace

Database::Database() {
  const auto pattern = std::filesystem::temp_directory_path() / "wexpol-bench-XXXXXX";
  std::string folder = pattern.string();
  if (!mkdtemp(folder.data())) Fail("no temporary folder");
  folder_ = std::filesystem::path(folder).wstring();
  wexpol::RedirectMachine(folder_);
  path_ = CFilePaths::GetLocationDB();
  std::string error;
  if (!wexpol::CreateDatabase(path_, error)) Fail("no database: " + error);
  session_ = std::make_unique<CPolicyDB>("60718", path_.c_str(), SQLITE_OPEN_READWRITE, 5000);
  handle_ = wexpol::OpenKeyed(path_, SQLITE_OPEN_READWRITE);
  if (!session_->IsValidDB() || !handle_) Fail("the database cannot be opened");
}

Database::~Database() {
  session_.reset();
  sqlite3_close(handle_);
  wexpol::DeleteRedirectedRegistry();
  wexpol::RedirectMachine(L"");
  std::filesystem::remove_all(folder_);
}

void Database::Sql(const std::string& statements) {
  if (sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail(statements.substr(0, 80) + ": " + sqlite3_errmsg(handle_));
  }
}

std::string Devices(int count) {
  std::string json = "[";
  for (int i = 1; i <= count; ++i) {
    const std::string n = std::to_string(i);
    if (i > 1) json += ",\n";
    json +=
        "{\"id\": " + n + ", \"account_id\": 7001, \"policy_id\": " + std::to_string(i % 8) +
        ", \"device_type_id\": 1, \"operating_system_id\": 12, \"device_status_id\": 2, " +
        "\"name\": \"B\xC3\xBCro-PC-" + n + "\", \"description\": \"Arbeitsplatz im dritten " +
        "Stock, Raum " + n + "\", \"comment\": \"Ger\xC3\xA4t wird im Herbst ersetzt; " +
        "Ansprechpartner ist die Hausverwaltung.\", \"ccl_id\": " +
        "\"0123456789abcdef0123456789abcdef 0123456789abcdef0123456789abcdef01234567\", " +
        "\"token\": null, \"time_zone_id\": 42, \"manufacturer\": \"Contoso Computing\", " +
        "\"domain\": \"ZENTRALE\", \"wan_ip\": \"198.51.100." + std::to_string(i % 250) +
        "\", \"device_group_id\": 3, \"is_master\": false, \"allow_remote_connection\": true, " +
        "\"device_detection_enabled\": true, \"install_invite_id\": 99, \"device_uid\": " +
        "\"6f1c2d3e-0000-4000-8000-" + std::string(12 - n.size(), '0') + n + "\", " +
        "\"midex\": \"MX-" + n + "\", \"os_display\": \"Windows 11 Pro\", \"os_build\": " +
        "\"22631.4317\", \"os_internal_version\": \"10.0.22631\"}";
  }
  return json + "]";
}

void Compare(benchmark::State& state, const std::vector<Contender>& contenders, int repeats,
             int rounds) {
  std::vector<std::vector<double>> times(contenders.size());
  std::vector<std::vector<double>> ratios(contenders.size());
  for (auto _ : state) {
    for (const Contender& contender : contenders) SecondsOfMany(contender, repeats);  // Warm up.
    for (int round = 0; round < rounds; ++round) {
      for (std::size_t i = 0; i < contenders.size(); ++i) {
        times[i].push_back(SecondsOfMany(contenders[i], repeats));
        ratios[i].push_back(times[i].back() / times[0].back());
      }
    }
  }
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    state.counters[contenders[i].name + "_us"] = Median(times[i]) * 1e6;
    if (i > 0) state.counters[contenders[i].name + "/" + contenders[0].name] = Median(ratios[i]);
  }
}

}  // namespace bench
