#include "webfilter/safe_search_parameter.h"

#include "records/synchronise.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblSafeSearchParameter::id>("id", records::kKey | records::kRequired),
    Column<&tblSafeSearchParameter::search_url>("search_url"),
    Column<&tblSafeSearchParameter::name>("name"),
    Column<&tblSafeSearchParameter::value>("value"),
    Column<&tblSafeSearchParameter::repeat_on_each_request>("repeat_on_each_request"),
    Column<&tblSafeSearchParameter::row_version>("row_version"),
};

}  // namespace

const records::Table& CSafeSearchParameter::Table() {
  static const records::Table& table =
      *new records::Table("safe_search_parameters", "safe_search_parameter", kColumns);
  return table;
}

bool CSafeSearchParameter::SpecialGetFromDB(std::list<CSafeSearchParameter*>& out, sqlite3* db,
                                            std::string* error) {
  std::string unused;
  return records::ListRecords(db, out, nullptr, 0, error ? *error : unused, "search_url DESC");
}
