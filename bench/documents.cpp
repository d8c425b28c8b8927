#include "bench/documents.h"

namespace bench {

std::string Accounts(int count) {
  std::string json = "[";
  for (int i = 1; i <= count; ++i) {
    if (i > 1) json += ",";
    json += "{\"id\": " + std::to_string(i) + ", \"locale_id\": 1033, \"account_status_id\": 1, " +
            "\"time_zone_id\": " + std::to_string(i % 139 + 1) + "}";
  }
  return json + "]";
}

std::string Categories(int count) {
  std::string json = "[";
  for (int i = 1; i <= count; ++i) {
    if (i > 1) json += ",";
    const std::string number = std::to_string(i);
    json += "{\"id\": " + number + ", \"name\": \"category " + number +
            "\", \"description\": \"what belongs to the category " + number +
            "\", \"notification\": null, \"category_type_id\": " + std::to_string(i % 9);
    for (const char* flag :
         {"client_should_cache", "is_search_engine", "is_pornography", "is_advertisement",
          "is_icat", "is_google_malware", "is_google_phishing", "is_se_keyword"}) {
      json += std::string(", \"") + flag + "\": " + (i % 3 ? "false" : "true");
    }
    json += ", \"row_version\": " + std::to_string(1000000 + i) + "}";
  }
  return json + "]";
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

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
}

}  // namespace bench
