#include "wexpol/alerts/check_timers.h"

#include <cstdint>
#include <optional>
#include <vector>

#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/units.h"
#include "wexpol/records/error_object.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/record.h"
#include "wexpol/records/scopes.h"

namespace wexpol {
namespace {

// SQLITE_OK, or what went wrong.
int StartTimers(sqlite3* db, const std::vector<long>& types) {
  if (types.empty()) return SQLITE_OK;
  WriteScope scope(db);
  if (!scope.ok()) return scope.code();
  for (const long type : types) {
    if (!CAlertCheck::StartTimer(db, type)) return sqlite3_errcode(db);
  }
  return scope.Commit() ? SQLITE_OK : sqlite3_errcode(db);
}

// Not now, because somebody else writes or this process may only read: a later call starts them.
bool MayStartLater(int code) { return code == SQLITE_BUSY || code == SQLITE_READONLY; }

}  // namespace

std::optional<std::uint64_t> CheckPeriod(const CAlertEventType& type,
                                         const std::set<short>* excluded) {
  if (!type.enabled || (excluded && excluded->contains(type.event_type_id))) return std::nullopt;
  if (type.suppression_duration >= 1) return MinutesToSeconds(type.suppression_duration);
  if (type.IsWindowsServiceEvent()) return MinutesToSeconds(type.time_window);
  return std::nullopt;
}

bool ReadCheckTimers(sqlite3* db, std::map<long, long>& timers, const char* column, long value,
                     const std::set<short>* excluded, std::string& error) {
  std::vector<long> without_timer;
  bool complete = false;
  {
    const ReadScope scope(db);
    ListStatement select(db, CAlertEventType::TimingTable(), column, value);
    while (select.StepRow()) {
      CAlertEventType type;
      CopyRow(CAlertEventType::TimingTable(), static_cast<tblAlertEventType*>(&type), select.get());
      const auto period = CheckPeriod(type, excluded);
      if (!period) continue;
      CAlertCheck check;
      const bool running = check.GetRecord(db, type.id);
      if (!running) without_timer.push_back(type.id);
      timers[type.id] =
          running ? check.SecondsRemaining(*period) : static_cast<std::int32_t>(*period);
    }
    complete = select.Finish(error);
  }
  if (!complete) return false;
  const int code = StartTimers(db, without_timer);
  if (code == SQLITE_OK || MayStartLater(code)) return true;
  error = FailureObject(db, code);
  return false;
}

}  // namespace wexpol
