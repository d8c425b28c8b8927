// When the alerts of the event types are next to be checked.

#ifndef WEXPOL_ALERTS_CHECK_TIMERS_H_
#define WEXPOL_ALERTS_CHECK_TIMERS_H_

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

class CAlertEventType;
struct sqlite3;

namespace wexpol {

// How long the check timer of a type runs, in seconds; nothing for a type that is not to be
// checked.
std::optional<std::uint64_t> CheckPeriod(const CAlertEventType& type,
                                         const std::set<short>* excluded = nullptr);

// The seconds until the next check by event type id, for the enabled types in which `column` has
// the value (all for a null column) and whose kind of event is not excluded. A type that suppresses
// is checked at the end of its suppression, one of a Windows service otherwise at the end of its
// window, any other not at all. Starts the timers of those that have none.
//
// False, with the error object, when the types cannot be read or the timers cannot be started.
// While another process writes, or where this one may only read, they are left to a later call.
bool ReadCheckTimers(sqlite3* db, std::map<long, long>& timers, const char* column, long value,
                     const std::set<short>* excluded, std::string& error);

}  // namespace wexpol

#endif  // WEXPOL_ALERTS_CHECK_TIMERS_H_
