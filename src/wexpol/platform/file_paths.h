// Where the agent's files lie on this machine.

#ifndef WEXPOL_PLATFORM_FILE_PATHS_H_
#define WEXPOL_PLATFORM_FILE_PATHS_H_

#include <string>

#include "wexpol/platform/export.h"

// Full paths in the agent's folder below the machine's common application data.
class WEXPOL_API CFilePaths {
 public:
  static std::wstring GetLocationDB();
  static std::wstring GetLocationBackupDB();
  static std::wstring GetLocationLogFile();  // in a folder beside it, which every user writes to
  // The log of the backup client's installer.
  static std::wstring GetOlbInstallLogFilePath();
};

#endif  // WEXPOL_PLATFORM_FILE_PATHS_H_
