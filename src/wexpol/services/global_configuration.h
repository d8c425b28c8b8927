// The numbered configuration values of the account: table "global_configurations".

#ifndef WEXPOL_SERVICES_GLOBAL_CONFIGURATION_H_
#define WEXPOL_SERVICES_GLOBAL_CONFIGURATION_H_

#include <cstdint>
#include <string>

#include "wexpol/records/record.h"

struct tblGlobalConfiguration {
  std::int16_t id = -1;  // The number; what it stands for is the console's.
  wexpol::Text value;
};

// A configuration value of the account, by its number.
class WEXPOL_API CGlobalConfiguration
    : public wexpol::Record<CGlobalConfiguration, tblGlobalConfiguration> {
 public:
  CGlobalConfiguration() = default;
  CGlobalConfiguration(short number, const char* text);
  CGlobalConfiguration(short number, const wchar_t* text);

  static const wexpol::Table& Table();

  // False, and `value` untouched, when the value is not there or NULL.
  static bool GetGlobalConfiguration(std::wstring& value, sqlite3* db, short id);

  // Whether the number has a row; nothing is taken from it.
  bool GetRecord(sqlite3* db, short number) const;

  // Writes the row of the number, whether it is there or not. A null value adds a row without one
  // and cannot change a row that is there.
  bool SetGlobalConfiguration(sqlite3* db);
  static bool SetGlobalConfiguration(sqlite3* db, short id, const wchar_t* value);

  void SetValue(const char* text) { value = text; }
  void SetValue(const wchar_t* text);
};

#endif  // WEXPOL_SERVICES_GLOBAL_CONFIGURATION_H_
