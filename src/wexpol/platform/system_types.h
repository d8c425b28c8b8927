// The system's time structures as the public interface names them: from windows.h there, and
// declared with the same fields elsewhere.

#ifndef WEXPOL_PLATFORM_SYSTEM_TYPES_H_
#define WEXPOL_PLATFORM_SYSTEM_TYPES_H_

#include <cstdint>
#include <type_traits>

#ifdef _WIN32

#include <windows.h>

// winnt.h has macros of these names; the session's enumeration uses them.
#undef TRANSACTION_COMMIT
#undef TRANSACTION_ROLLBACK

#else

// NOLINTBEGIN(bugprone-reserved-identifier)
struct _SYSTEMTIME {
  std::uint16_t wYear;
  std::uint16_t wMonth;
  std::uint16_t wDayOfWeek;  // Sunday is 0.
  std::uint16_t wDay;
  std::uint16_t wHour;
  std::uint16_t wMinute;
  std::uint16_t wSecond;
  std::uint16_t wMilliseconds;
};
using SYSTEMTIME = _SYSTEMTIME;

struct _TIME_ZONE_INFORMATION {
  std::int32_t Bias;  // Minutes; UTC = local time + Bias.
  wchar_t StandardName[32];
  SYSTEMTIME StandardDate;
  std::int32_t StandardBias;
  wchar_t DaylightName[32];
  SYSTEMTIME DaylightDate;
  std::int32_t DaylightBias;
};
using TIME_ZONE_INFORMATION = _TIME_ZONE_INFORMATION;
// NOLINTEND(bugprone-reserved-identifier)

#endif

// The registry's time-zone record is documented but missing from most kits. A structure that the
// program or its kit declared before this point is used, else one of the same layout. A program
// that declares it after this point defines WEXPOL_HOST_DECLARES_REG_TZI_FORMAT. No exported name
// of the library depends on which one it is.
struct _REG_TZI_FORMAT;  // NOLINT(bugprone-reserved-identifier)

#ifdef WEXPOL_HOST_DECLARES_REG_TZI_FORMAT

using REG_TZI_FORMAT = _REG_TZI_FORMAT;

#else

namespace wexpol {

struct RegistryTimeZone {
  std::int32_t Bias;
  std::int32_t StandardBias;
  std::int32_t DaylightBias;
  SYSTEMTIME StandardDate;
  SYSTEMTIME DaylightDate;
};

template <class Declared, class = void>
struct TimeZoneRecord {
  using Type = RegistryTimeZone;
};
// Chosen when the type is complete.
template <class Declared>
struct TimeZoneRecord<Declared, std::void_t<decltype(sizeof(Declared))> > {
  using Type = Declared;
};

}  // namespace wexpol

using REG_TZI_FORMAT = wexpol::TimeZoneRecord<_REG_TZI_FORMAT>::Type;
static_assert(sizeof(REG_TZI_FORMAT) == 44, "the layout of the stored time zone");

#endif

static_assert(sizeof(SYSTEMTIME) == 16, "the layout of the stored time");

#endif  // WEXPOL_PLATFORM_SYSTEM_TYPES_H_
