// What the parts of the facade are made of. Only policy_db_*.cpp include it.

#ifndef WEXPOL_POLICYDB_FACADE_H_
#define WEXPOL_POLICYDB_FACADE_H_

#include <string>
#include <utility>

#include "wexpol/policydb/policy_db.h"
#include "wexpol/records/error_object.h"
#include "wexpol/records/lists.h"
#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/synchronise.h"

namespace wexpol {

// What `question` answers; `failure` when it throws: nothing leaves the facade, neither the int of
// a failed bind nor a failed allocation.
template <typename Answer, typename Question>
Answer Ask(Answer failure, Question&& question) noexcept {
  try {
    return std::forward<Question>(question)();
  } catch (...) {
    return failure;
  }
}

template <typename Question>
bool Ask(Question&& question) noexcept {
  return Ask(false, std::forward<Question>(question));
}

// The same of what leaves an error object in `error`, as it then does for a denied allocation, too.
template <typename Question>
bool AskAndTell(std::string& error, Question&& question) noexcept {
  try {
    return std::forward<Question>(question)();
  } catch (...) {
    TellOutOfMemory(error);
    return false;
  }
}

// Deletes the row of that id; true also when there is none.
template <typename Record>
bool DeleteById(sqlite3* db, std::int32_t id) {
  Record key;
  key.id = id;
  return key.DelFromDB(db) == SQLITE_DONE;
}

}  // namespace wexpol

template <typename Record>
bool CPolicyDB::ClearAndAdd(const char* json) {
  return wexpol::AskAndTell(m_error, [&] {
    return wexpol::ReplaceTable(handle(), wexpol::kRecordClass<Record>, json, m_error);
  });
}

template <typename Record>
bool CPolicyDB::Add(const char* json) {
  return wexpol::AskAndTell(m_error, [&] {
    return wexpol::AddDocument(handle(), wexpol::kRecordClass<Record>, json, m_error);
  });
}

template <typename Record>
bool CPolicyDB::Clear() {
  return wexpol::Ask([&] { return wexpol::ClearTable(handle(), Record::Table()); });
}

template <typename Record>
bool CPolicyDB::List(std::list<Record*>& out, const char* column, long value) {
  return wexpol::AskAndTell(
      m_error, [&] { return wexpol::ListRecords(handle(), out, column, value, m_error); });
}

template <typename Record>
bool CPolicyDB::ReadFirst(Record& record) {
  return wexpol::AskAndTell(m_error, [&] {
    return wexpol::ReadRecord(record, m_error, handle(), Record::Table().select());
  });
}

template <typename Record>
bool CPolicyDB::ReadByKey(Record& record, long key) {
  return wexpol::AskAndTell(m_error, [&] {
    return wexpol::ReadRecord(record, m_error, handle(), Record::Table().select_by_key(), key);
  });
}

#endif  // WEXPOL_POLICYDB_FACADE_H_
