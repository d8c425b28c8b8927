// How often the agent tried to download and to install each service, counted under the agent key.

#ifndef WEXPOL_SERVICES_SERVICE_ATTEMPTS_H_
#define WEXPOL_SERVICES_SERVICE_ATTEMPTS_H_

#include <string>

namespace wexpol {

inline constexpr wchar_t kDownloadAttempts[] = L"SDA%02d";
inline constexpr wchar_t kInstallAttempts[] = L"SIA%02d";

inline constexpr int kMaxAttempts = 3;

// The name of a service's count: the format with the service id, in two digits at least, in the
// place of its "%02d"; nothing else in it is special. Empty for a name of more than 79 characters.
std::wstring AttemptsValueName(short service_id, const wchar_t* format);

// False, and `count` untouched, when there is no count.
bool ReadAttempts(short& count, short service_id, const wchar_t* format);
// False when it cannot be written. A count may be any number.
bool WriteAttempts(short service_id, short count, const wchar_t* format);

// The last stage of an installation, by its ServiceStatus, starts both counts of the service at 0;
// false when neither could be written. Any other status does nothing and is false.
bool StartAttempts(short service_id, short status);

// 1 when the attempt was counted, 0 when there may be no more. -1 when there is
// no count or it cannot be written.
int CountAttempt(short service_id, const wchar_t* format);

// Whether more than are allowed are counted, which only another program can have done.
bool HasExceededAttempts(short service_id, const wchar_t* format);

}  // namespace wexpol

#endif  // WEXPOL_SERVICES_SERVICE_ATTEMPTS_H_
