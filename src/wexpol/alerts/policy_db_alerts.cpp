// The facade's operations over alerts.

#include "wexpol/alerts/alert_check.h"
#include "wexpol/alerts/alert_event_type.h"
#include "wexpol/alerts/alert_log.h"
#include "wexpol/alerts/alert_log_buffer.h"
#include "wexpol/alerts/alerts_sent.h"
#include "wexpol/alerts/check_timers.h"
#include "wexpol/alerts/sales_alert_option.h"
#include "wexpol/policydb/facade.h"

using wexpol::Ask;
using wexpol::AskAndTell;

bool CPolicyDB::ClearAndAddAlertEventTypes(const char* json) {
  return ClearAndAdd<CAlertEventType>(json);
}
bool CPolicyDB::ClearAlertEventTypes() { return Clear<CAlertEventType>(); }
bool CPolicyDB::GetAlertEventTypes(std::list<CAlertEventType*>& out, const char* column,
                                   long value) {
  return List(out, column, value);
}

bool CPolicyDB::GetAlertEventType(CAlertEventType* type, long id) {
  return type && Ask([&] { return type->GetRecord(handle(), id); });
}
bool CPolicyDB::GetAlertEventType(CAlertEventType* type, short eventTypeId) {
  return type && Ask([&] { return type->LoadFromDb(handle(), eventTypeId); });
}
bool CPolicyDB::IsAutoAcknowledgeEnabled(short eventTypeId) {
  return Ask([&] { return CAlertEventType::IsAutoAcknowledgeEnabled(handle(), eventTypeId); });
}

bool CPolicyDB::ClearAndAddSalesAlertOptions(const char* json) {
  return ClearAndAdd<CSalesAlertOption>(json);
}
bool CPolicyDB::GetSalesAlertOptions(CSalesAlertOption* option) {
  return option && ReadFirst(*option);
}

long CPolicyDB::AddAlertLogBuffer(const CAlertEventType* type, const char* details) {
  return Ask(
      -1L, [&] { return type ? CAlertLogBuffer::AddAlertLogBuffer(handle(), type, details) : -1; });
}

bool CPolicyDB::AddAlertLogBuffer(std::vector<long>& toSend, short eventTypeId,
                                  const char* details) {
  return Ask(
      [&] { return CAlertLogBuffer::AddAlertLogBuffer(toSend, handle(), eventTypeId, details); });
}

bool CPolicyDB::AddAlertLog(const CAlertLog* log) {
  return log && Ask([&] { return log->AddWithTimer(handle()); });
}
bool CPolicyDB::GetAlertLogs(std::list<CAlertLog*>& out, long alertEventTypeId) {
  return AskAndTell(m_error,
                    [&] { return CAlertLog::List(handle(), out, alertEventTypeId, m_error); });
}
bool CPolicyDB::DeleteAlertLogs(long alertEventTypeId) {
  return Ask([&] { return CAlertLog::DeleteByType(handle(), alertEventTypeId) == SQLITE_DONE; });
}
bool CPolicyDB::DeleteAlertLog(const CAlertLog* log) {
  return log && Ask([&] { return wexpol::DeleteById<CAlertLog>(handle(), log->id); });
}

int CPolicyDB::AddAlertSent(short eventTypeId) {
  return Ask(SQLITE_NOMEM, [&] { return CAlertsSent(eventTypeId).Add2DB(handle()); });
}
bool CPolicyDB::DidWeSendThisTypeOfAlert(short eventTypeId) {
  return Ask([&] { return CAlertsSent::WasSent(handle(), eventTypeId); });
}
bool CPolicyDB::DidWeSendThisTypeOfAlertBeforeThisTime(short eventTypeId, std::int64_t time) {
  return Ask([&] { return CAlertsSent::WasSentBefore(handle(), eventTypeId, time); });
}
int CPolicyDB::RemoveAlertSent(short eventTypeId) {
  return Ask(SQLITE_NOMEM, [&] { return CAlertsSent::DeleteByType(handle(), eventTypeId); });
}

bool CPolicyDB::UpdateAlertCheck(long alertEventTypeId, bool alertSent) {
  return Ask([&] { return CAlertCheck::UpdateAlertCheck(handle(), alertEventTypeId, alertSent); });
}

std::int64_t CPolicyDB::GetAlertCheckTime(long alertEventTypeId) {
  return Ask(std::int64_t{-1}, [&] { return CAlertCheck::GetTime(handle(), alertEventTypeId); });
}

long CPolicyDB::GetAlertSecondsRemaining(long alertEventTypeId, std::uint64_t period) {
  return Ask(0L,
             [&] { return CAlertCheck::GetSecondsRemaining(handle(), alertEventTypeId, period); });
}

bool CPolicyDB::GetAlertCheckTimerValues(std::map<long, long>& timers, const char* column,
                                         long value, std::set<short>* excluded) {
  return AskAndTell(m_error, [&] {
    return wexpol::ReadCheckTimers(handle(), timers, column, value, excluded, m_error);
  });
}
