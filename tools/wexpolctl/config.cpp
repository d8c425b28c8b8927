// wexpolctl config: the configuration values of the services and of the account.

#include <limits>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/secrets.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

Cell ValueOf(const std::string& key, const char* value) {
  if (!value) return Nothing();
  return Text(IsSecretKey(key) ? kMask : std::string_view(value));
}

// As the agent asks: for one service, or for whichever has the key.
ExitCode Get(Call& call) {
  Database database(call.database);
  const std::string key = call.options.Text("KEY");
  auto service = call.options.Number("--service");
  if (!service) {
    const auto any = wexpol::QueryInt(
        database.handle(), "SELECT service_id FROM service_configurations WHERE key=?", key);
    if (any) service = *any;
  }
  std::string value;
  const bool fits = !service || (*service >= 0 && *service <= std::numeric_limits<short>::max());
  if (!fits || !database.session().GetServiceConfiguration(
                   value, key.c_str(), static_cast<short>(service.value_or(-1)))) {
    throw Failure{kFinding, "There is no value of '" + key + "'.",
                  "All keys are shown by 'wexpolctl config list'."};
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
  Database database(call.database);
  Listing& services = call.report.AddListing("services", {"service", "key", "value"});
  wexpol::Statement named(
      database.handle(),
      "SELECT service_id, key, value FROM service_configurations ORDER BY service_id, key");
  while (named.StepRow()) {
    const std::string key = named.IsNull(1) ? "" : named.Text(1);
    services.Add({named.IsNull(0) ? Nothing() : Number(named.Int(0)), Text(key),
                  ValueOf(key, named.Text(2))});
  }
  Listing& global = call.report.AddListing("global", {"number", "value"});
  wexpol::Statement numbered(database.handle(),
                             "SELECT id, value FROM global_configurations ORDER BY id");
  while (numbered.StepRow()) {
    global.Add({Number(numbered.Int(0)), ValueOf({}, numbered.Text(1))});
  }
  return kDone;
}

}  // namespace

Command ConfigGetCommand() {
  return {"config get",
          "Show a configuration value",
          {{"KEY", Option::kText, "The name of the value", true},
           {"--service ID", Option::kNumber, "Of this service; else of the first that has it"}},
          &Get};
}

Command ConfigListCommand() {
  return {"config list", "Show all configuration values", {}, &ListAll};
}

}  // namespace wexpolctl
