// The C interface: services, configuration, programs, the web filter, alerts, scans, time, restart.

#include <rapidjson/document.h>

#include "wexpol/c_api/session.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"
#include "wexpol/records/document.h"
#include "wexpol/records/json_text.h"

namespace {

constexpr int kDigestSize = 16;

void AppendMember(const char* name, long value, std::string& object) {
  object.append(object.size() > 1 ? ",\"" : "\"").append(name).append("\": ");
  object.append(std::to_string(value));
}

// What decided, in a closed object.
std::string Why(const CAppControlInfo& info) {
  std::string why = "{";
  if (info.control_flag == CONTROL_FLAG_BLOCK) {
    AppendMember("policy_id", info.policy_id, why);
    AppendMember("app_control_id", info.app_control_id, why);
    AppendMember("app_control_app_id", info.app_control_app_id, why);
  }
  if (info.control_flag != CONTROL_FLAG_NONE) AppendMember("app_id", info.app_id, why);
  if (info.control_flag == CONTROL_FLAG_MONITOR && info.app_name) {
    why += ",\"app_name\": ";
    wexpol::AppendJsonString(wexpol::WideToUtf8(info.app_name.get()), why);
  }
  return why + "}";
}

// The texts of a JSON array; what else it holds, or no array, names nothing.
std::set<std::wstring> NamesIn(const char* json) {
  std::set<std::wstring> names;
  wexpol::Document document;
  if (!document.Parse(json) || !document.root().IsArray()) return names;
  for (const rapidjson::Value& name : document.root().GetArray()) {
    if (name.IsString()) names.insert(wexpol::Utf8ToWide(name.GetString()));
  }
  return names;
}

// The moment of a change, as the system's record tells it: a day of the week in a week of a month.
void AppendChange(const char* name, const SYSTEMTIME& change, std::string& zone) {
  std::string members = "{";
  AppendMember("month", change.wMonth, members);
  AppendMember("day_of_week", change.wDayOfWeek, members);
  AppendMember("week", change.wDay, members);
  AppendMember("hour", change.wHour, members);
  AppendMember("minute", change.wMinute, members);
  zone.append(",\"").append(name).append("\": ").append(members).append("}");
}

std::string ZoneObject(const TIME_ZONE_INFORMATION& zone) {
  std::string object = "{";
  AppendMember("bias", zone.Bias, object);
  AppendMember("standard_bias", zone.StandardBias, object);
  AppendMember("daylight_bias", zone.DaylightBias, object);
  AppendChange("standard_date", zone.StandardDate, object);
  AppendChange("daylight_date", zone.DaylightDate, object);
  return object + "}";
}

}  // namespace

int wexpol_service_state(wexpol_session* session, int16_t service) {
  return wexpol::AskSession(session, 0, nullptr, [&](CPolicyDB& db) {
    const auto bit = [](bool set, int value) { return set ? value : 0; };
    return bit(db.IsServiceInstallNeeded(service, -1), WEXPOL_SERVICE_TO_BE_INSTALLED) |
           bit(db.IsServiceInstalled(service), WEXPOL_SERVICE_INSTALLED) |
           bit(db.IsServiceEnabled(service, false), WEXPOL_SERVICE_ENABLED) |
           bit(db.IsServiceInstalledAndEnabled(service), WEXPOL_SERVICE_ACTIVE) |
           bit(db.IsServiceAvailable(service), WEXPOL_SERVICE_AVAILABLE);
  });
}

int wexpol_restart_attempts(wexpol_session* session, int16_t service) {
  return wexpol::RunSession(session, nullptr, [&](CPolicyDB& db) {
    return db.SetServiceStatus(service, wexpol::kServiceLastStage);
  });
}

int wexpol_count_attempt(wexpol_session* session, int16_t service, int attempt) {
  return wexpol::AskSession(session, -1, nullptr, [&](CPolicyDB& db) {
    return attempt == WEXPOL_ATTEMPT_INSTALL ? db.IncrementServiceInstallAttempts(service)
                                             : db.IncrementServiceDownloadAttempts(service);
  });
}

int wexpol_get_configuration(wexpol_session* session, const char* key, int16_t service,
                             char** value) {
  return wexpol::AskSession(session, 0, value, [&](CPolicyDB& db) {
    std::string found;
    if (!key || !db.GetServiceConfiguration(found, key, service)) return false;
    wexpol::HandOver(found, value);
    return true;
  });
}

int wexpol_set_configuration(wexpol_session* session, const char* key, int16_t service,
                             const char* value) {
  return wexpol::RunSession(session, nullptr, [&](CPolicyDB& db) {
    return key && value && db.SetServiceConfigurationRaw(value, key, 0, service);
  });
}

int wexpol_decide_program(wexpol_session* session, const char* login, const char* file_name,
                          const unsigned char* md5, char** why) {
  return wexpol::AskSession(session, int{WEXPOL_PROGRAM_FREE}, why, [&](CPolicyDB& db) {
    CAppControlInfo info;
    if (login) {
      info.login_id = static_cast<int32_t>(db.GetLoginId(wexpol::Utf8ToWide(login).c_str()));
    }
    db.IsAppControlled(info, file_name, md5, md5 ? kDigestSize : 0);
    wexpol::HandOver(Why(info), why);
    return info.control_flag;
  });
}

int wexpol_learn_program(wexpol_session* session, const unsigned char* md5, int flag) {
  return wexpol::RunSession(session, nullptr, [&](CPolicyDB& db) {
    return md5 && db.AddAppChecksumToDB(md5, kDigestSize, static_cast<short>(flag));
  });
}

int wexpol_has_category(wexpol_session* session, int kind, const char* names) {
  return wexpol::AskSession(session, 0, nullptr, [&](CPolicyDB& db) {
    return kind == WEXPOL_CATEGORY_PORNOGRAPHY ? db.IsPornCategoryPresent(NamesIn(names))
                                               : db.AnyMoviesAndTvCategories(NamesIn(names));
  });
}

int wexpol_is_never_blocked(wexpol_session* session, const char* domain) {
  return wexpol::AskSession(session, 0, nullptr, [&](CPolicyDB& db) {
    return domain && wexpol::QueryExists(wexpol::HandleOf(db),
                                         "SELECT id FROM never_block_domains WHERE domain=?",
                                         std::string(domain));
  });
}

int wexpol_occurred(wexpol_session* session, int16_t kind, const char* details, char** types) {
  return wexpol::RunSession(session, types, [&](CPolicyDB& db) {
    std::vector<long> to_send;
    if (!db.AddAlertLogBuffer(to_send, kind, details)) return false;
    std::string ids = "[";
    for (const long id : to_send) ids.append(ids.size() > 1 ? "," : "").append(std::to_string(id));
    wexpol::HandOver(ids + "]", types);
    return true;
  });
}

int wexpol_alert_sent(wexpol_session* session, int32_t type) {
  // An id below 1 would mean the alerts of all types.
  return wexpol::RunSession(session, nullptr, [&](CPolicyDB& db) {
    return type > 0 && db.DeleteAlertLogs(type) && db.UpdateAlertCheck(type, true);
  });
}

int wexpol_check_timers(wexpol_session* session, char** json) {
  return wexpol::RunSession(session, json, [&](CPolicyDB& db) {
    std::map<long, long> timers;
    std::set<short> excluded;
    if (!db.GetAlertCheckTimerValues(timers, nullptr, 0, &excluded)) return false;
    std::string object = "{";
    for (const auto& [type, seconds] : timers) {
      AppendMember(std::to_string(type).c_str(), seconds, object);
    }
    wexpol::HandOver(object + "}", json);
    return true;
  });
}

int64_t wexpol_next_scan(wexpol_session* session, int32_t* schedule) {
  return wexpol::AskSession(session, int64_t{-1}, nullptr, [&](CPolicyDB& db) {
    int64_t next = -1;
    wexpol::OwnedList<CAvSchedule> schedules;
    db.GetRecords(schedules.items());
    for (const CAvSchedule* each : schedules.items()) {
      const long seconds = each->enabled ? each->HowLongUntilSchedule() : -1;
      if (seconds < 0 || (next >= 0 && seconds >= next)) continue;
      next = seconds;
      if (schedule) *schedule = each->id;
    }
    return next;
  });
}

int wexpol_time_information(wexpol_session* session, char** json) {
  return wexpol::AskSession(session, 0, json, [&](CPolicyDB& db) {
    constexpr int32_t kNoZone = INT32_MAX;  // stays when none is assigned
    TIME_ZONE_INFORMATION zone = {};
    zone.Bias = kNoZone;
    std::set<std::string> servers;
    const bool known = db.GetTimeInfo(&zone, servers);
    std::string object = "{";
    if (zone.Bias != kNoZone) object.append("\"zone\": ").append(ZoneObject(zone)).append(",");
    object += "\"servers\": [";
    const char* separator = "";
    for (const std::string& server : servers) {
      object += separator;
      wexpol::AppendJsonString(server, object);
      separator = ",";
    }
    wexpol::HandOver(object + "]}", json);
    return known;
  });
}

int wexpol_safe_reboot_line(wexpol_session* session, const char* title, const char* service_name,
                            char** line) {
  return wexpol::AskSession(session, 0, line, [&](CPolicyDB& db) {
    CRestartPolicySettings settings;
    if (!db.GetRestartPolicySettings(&settings)) return false;
    std::wstring options;
    settings.GetIvantiSafeRebootCommandLineOptions(options, wexpol::ToWide(title),
                                                   wexpol::ToWide(service_name));
    wexpol::HandOver(wexpol::WideToUtf8(options), line);
    return true;
  });
}
