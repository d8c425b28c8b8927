// wexpolctl config: the configuration values of the services and of the account.

#include <cstdint>
#include <optional>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/secrets.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

Cell ValueOf(const std::string& key, const char* value) {
  if (!value) return Nothing();
  return Text(IsSecretKey(key) && *value ? kMask : std::string_view(value));
}

// One whose id the agent can ask for.
std::optional<std::int64_t> AnyServiceOf(sqlite3* db, const std::string& key) {
  return wexpol::QueryInt(db,
                          "SELECT service_id FROM service_configurations WHERE key=? AND "
                          "service_id BETWEEN 0 AND 32767",
                          key);
}

[[noreturn]] void ThrowNoValue(sqlite3* db, const std::string& key) {
  const bool has_row =
      wexpol::QueryExists(db, "SELECT 1 FROM service_configurations WHERE key=?", key);
  throw Failure{kFinding,
                has_row ? "'" + key + "' has no value of such a service: the agent finds none."
                        : "There is no value of '" + key + "'.",
                "All keys are shown by 'wexpolctl config list'."};
}

// As the agent asks: for one service, or for whichever has the key.
ExitCode Get(Call& call) {
  Database database(call.database, Database::kAsk);
  const std::string key = call.options.Text("KEY");
  auto service = call.options.Number("--service");
  if (!service) service = AnyServiceOf(database.handle(), key);
  std::string value;
  if (!database.session().GetServiceConfiguration(value, key.c_str(),
                                                  static_cast<short>(service.value_or(-1)))) {
    ThrowNoValue(database.handle(), key);
  }
  call.report.Add("key", Text(key));
  call.report.Add("service", service ? Number(*service) : Nothing());
  call.report.Add("value", ValueOf(key, value.c_str()));
  bool flag = false;
  database.session().GetServiceConfiguration(flag, key.c_str(),
                                             static_cast<short>(service.value_or(-1)));
  call.report.Add("read as a switch", Flag(flag));
  return kDone;
}

ExitCode ListAll(Call& call) {
  Database database(call.database, Database::kAsk);
  Listing& services = call.report.AddListing("services", {"service", "key", "value"});
  wexpol::Statement named(
      database.handle(),
      "SELECT service_id, key, value FROM service_configurations ORDER BY service_id, key");
  ForEachRow(named, [&] {
    const std::string key = named.IsNull(1) ? "" : named.Text(1);
    services.Add({named.IsNull(0) ? Nothing() : Number(named.Int(0)), Text(key),
                  ValueOf(key, named.Text(2))});
  });
  Listing& global = call.report.AddListing("global", {"number", "value"});
  wexpol::Statement numbered(database.handle(),
                             "SELECT id, value FROM global_configurations ORDER BY id");
  ForEachRow(numbered, [&] {
    // What a number stands for is the console's to know.
    global.Add({Number(numbered.Int(0)), ValueOf({}, numbered.Text(1))});
  });
  return kDone;
}

}  // namespace

Command ConfigGetCommand() {
  return {"config get",
          "Show a configuration value",
          {{"KEY", Option::kText, "The name of the value", true},
           {"--service ID",
            Option::kNumber,
            "Of this service; else of the first that has it",
            false,
            {},
            INT16_MAX}},
          &Get};
}

Command ConfigListCommand() {
  return {"config list", "Show all configuration values", {}, &ListAll};
}

}  // namespace wexpolctl
