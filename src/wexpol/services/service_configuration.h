// The named configuration values of the services: table "service_configurations".

#ifndef WEXPOL_SERVICES_SERVICE_CONFIGURATION_H_
#define WEXPOL_SERVICES_SERVICE_CONFIGURATION_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblServiceConfiguration {
  std::int32_t id = -1;  // Given by the database where a value is set here.
  std::int16_t service_id = -1;
  wexpol::Text key;
  wexpol::Text value;
  std::int16_t is_url = -1;  // Whether the value is an address: 1, 0, or -1 while unknown.
  std::int64_t row_version = -1;
};

// A configuration value of a service, by its name. Several services may have one of the same name.
class WEXPOL_API CServiceConfiguration
    : public wexpol::Record<CServiceConfiguration, tblServiceConfiguration> {
 public:
  static const wexpol::Table& Table();

  // The value of the first row of the key, whatever its service, to be deleted with delete[]; null
  // when there is none. The service id is accepted and not used: the key alone decides.
  static char* GetServiceConfiguration(sqlite3* db, const char* key, short service_id = -1);
  // The value of the key for that service. False, and `value` untouched, when there is none; a
  // service id of -1 has none.
  static bool GetServiceConfiguration(std::string& value, sqlite3* db, const char* key,
                                      short service_id);

  // Takes the first row of the wanted key: for a service id above 0 that service's, else any. A key
  // of more than 78 bytes is never found.
  bool GetRecord(sqlite3* db, const char* wanted, short wanted_service);

  // Replaces the value (unless null) of the row that GetRecord finds, or adds a row where it finds
  // none: for a key of more than 78 bytes always. False for a null key.
  bool SetServiceConfiguration(sqlite3* db, const char* new_value, const char* wanted,
                               short new_is_url, short wanted_service);

  void SetKey(const char* text) { key = text; }
  void SetKey(const wchar_t* text);
  void SetValue(const char* text) { value = text; }
  void SetValue(const wchar_t* text);
};

#endif  // WEXPOL_SERVICES_SERVICE_CONFIGURATION_H_
