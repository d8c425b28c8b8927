// The versions of the products that services consist of: table "device_subservice_versions".

#ifndef WEXPOL_SERVICES_DEVICE_SUBSERVICE_VERSION_H_
#define WEXPOL_SERVICES_DEVICE_SUBSERVICE_VERSION_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "wexpol/platform/system_types.h"
#include "wexpol/records/record.h"

enum SUBSERVICE_ID : std::int16_t {
  SUBSERVICE_ID_CLOUD_BACKUP = 9,
  SUBSERVICE_ID_SHADOW_BACKUP = 10,
};

// Parts that are not known are -1.
struct SIMPLE_DATETIME {
  std::uint16_t year = UINT16_MAX;  // So while the date is not set.
  std::int8_t month = -1;
  std::int8_t day = -1;
  std::int8_t hour = -1;
  std::int8_t minute = -1;
  std::int8_t second = -1;
};

struct tblDeviceSubserviceVersion {
  std::int16_t subservice_id = -1;  // A SUBSERVICE_ID.
  std::int32_t device_id = -1;
  std::uint32_t major = UINT32_MAX;
  std::uint32_t minor = UINT32_MAX;
  std::uint32_t micro = UINT32_MAX;  // Only documents have one.
  std::uint32_t build = UINT32_MAX;
  std::uint32_t incremental = UINT32_MAX;
  SIMPLE_DATETIME version_date;  // "2024-05-11T06:13:20" in documents and in the row.
  bool out_of_date = false;      // Said by the console, never reported to it.
};

// Which version of a product a device has, and the latest error of the record.
class WEXPOL_API CDeviceSubserviceVersion
    : public wexpol::Record<CDeviceSubserviceVersion, tblDeviceSubserviceVersion> {
 public:
  CDeviceSubserviceVersion() = default;
  // Set what they name.
  explicit CDeviceSubserviceVersion(short id);
  CDeviceSubserviceVersion(short id, unsigned long new_major, unsigned long new_incremental);
  CDeviceSubserviceVersion(short id, unsigned long new_major, unsigned long new_minor,
                           unsigned long new_build);
  CDeviceSubserviceVersion(short id, unsigned long new_major, unsigned long new_minor,
                           unsigned long new_build, unsigned long new_incremental);

  static const wexpol::Table& Table();

  // Set what they name and leave the rest. Of a date the milliseconds and the day of the week are
  // not kept.
  void Set(short id, unsigned long new_major, unsigned long new_incremental);
  void Set(short id, unsigned long new_major, unsigned long new_minor, unsigned long new_build);
  void Set(short id, unsigned long new_major, unsigned long new_minor, const SYSTEMTIME& date);
  void Set(short id, const SIMPLE_DATETIME& date);
  void SetVersionDate(const SYSTEMTIME& date);

  // An object needs a sub-service or a device. What it holds under "subservice_version" counts
  // instead of its own.
  bool ParseJson(const rapidjson::Value& json);
  // Without a device the stored id of this one is reported.
  void GenerateJson(std::string& out) const;

  // Takes one object and puts its row in the place of the sub-service's. GetError tells what went
  // wrong the last time; empty after a success.
  bool UpdateDeviceSubserviceVersion(sqlite3* db, const char* json);
  std::string GetError() const { return error_; }

  // A copy of everything but `out_of_date`, as a binary value under the agent key. Reading is false
  // when there is no value of that name and type; of a shorter one the rest of the record stays.
  bool WriteToRegistry(const wchar_t* name);
  bool ReadFromRegistry(const wchar_t* name);

  // Takes the version of an installed backup client; false when it is not installed, or its version
  // is not more than one number.
  bool LoadFromRegistry(SUBSERVICE_ID id);
  // The version of the backup client that is installed, "6.2.4.123"; empty when there is none.
  static std::string GetInstalledOnlineBackupVersion();

  // Seconds since the date; 0 for one up to the year 2000. One that is no date, or not set, counts
  // as the year 1601.
  std::int64_t HowLongSinceLastUpdate() const;

 private:
  std::string error_;
};

#endif  // WEXPOL_SERVICES_DEVICE_SUBSERVICE_VERSION_H_
