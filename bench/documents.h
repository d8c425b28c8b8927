// Documents, and the two ways from a document to rows that every comparison has.

#ifndef WEXPOL_BENCH_DOCUMENTS_H_
#define WEXPOL_BENCH_DOCUMENTS_H_

#include <cstdlib>
#include <string>

#include "bench/bench_support.h"
#include "wexpol/records/document.h"
#include "wexpol/records/synchronise.h"

namespace bench {

// The accounts table without what an account does to the registry when it is parsed.
class CPlainAccount : public wexpol::Record<CPlainAccount, tblAccount> {
 public:
  static const wexpol::Table& Table() {
    using wexpol::Column;
    static constexpr wexpol::ColumnDef kColumns[] = {
        Column<&tblAccount::id>("id", wexpol::kKey | wexpol::kRequired),
        Column<&tblAccount::locale_id>("locale_id", wexpol::kRequired),
        Column<&tblAccount::account_status_id>("account_status_id"),
        Column<&tblAccount::time_zone_id>("time_zone_id"),
    };
    static const wexpol::Table& table = *new wexpol::Table("accounts", "account", kColumns);
    return table;
  }
};

// Documents of that many records: 4 columns of numbers, 14 columns, and 25 columns of the width
// that real devices have.
std::string Accounts(int count);
std::string Categories(int count);
std::string Devices(int count);

void Exec(sqlite3* db, const char* sql);

// The document's tree, each record parsed into its class, its insert prepared anew.
template <typename Record>
__attribute__((noinline)) void Naive(sqlite3* db, const std::string& json) {
  rapidjson::Document document;
  document.Parse(json.c_str());
  for (const auto& value : document.GetArray()) {
    Record record;
    if (!record.ParseJson(value) || record.Add2DB(db) != SQLITE_DONE) std::abort();
  }
}

template <typename Record>
__attribute__((noinline)) void Ours(sqlite3* db, const std::string& json) {
  std::string error;
  if (!wexpol::AddDocument(db, wexpol::kRecordClass<Record>, json.c_str(), error)) std::abort();
}

}  // namespace bench

#endif  // WEXPOL_BENCH_DOCUMENTS_H_
