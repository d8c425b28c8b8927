// What the parts of the facade are made of. Only policy_db_*.cpp include it.

#ifndef POLICYDB_FACADE_H_
#define POLICYDB_FACADE_H_

#include <utility>

#include "policydb/policy_db.h"
#include "records/query.h"
#include "records/synchronise.h"

namespace policydb {

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

}  // namespace policydb

template <typename Record>
bool CPolicyDB::ClearAndAdd(const char* json) {
  return policydb::Ask([&] {
    return records::ReplaceTable(handle(), records::kRecordClass<Record>, json, m_error);
  });
}

template <typename Record>
bool CPolicyDB::Add(const char* json) {
  return policydb::Ask(
      [&] { return records::AddDocument(handle(), records::kRecordClass<Record>, json, m_error); });
}

template <typename Record>
bool CPolicyDB::Clear() {
  return policydb::Ask([&] { return records::ClearTable(handle(), Record::Table()); });
}

template <typename Record>
bool CPolicyDB::List(std::list<Record*>& out, const char* column, long value) {
  return policydb::Ask([&] { return records::ListRecords(handle(), out, column, value, m_error); });
}

template <typename Record>
bool CPolicyDB::ReadFirst(Record& record) {
  return policydb::Ask([&] {
    return records::ReadRecord(record, m_error, handle(),
                               records::Sql::Permanent(Record::Table().select_sql()));
  });
}

template <typename Record>
bool CPolicyDB::ReadByKey(Record& record, long key) {
  return policydb::Ask([&] {
    return records::ReadRecord(record, m_error, handle(),
                               records::Sql::Permanent(Record::Table().select_by_key_sql()), key);
  });
}

#endif  // POLICYDB_FACADE_H_
