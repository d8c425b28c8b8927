#include "wexpol/webfilter/safe_search_parameter.h"

#include "wexpol/records/lists.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblSafeSearchParameter::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblSafeSearchParameter::search_url>("search_url"),
    Column<&tblSafeSearchParameter::name>("name"),
    Column<&tblSafeSearchParameter::value>("value"),
    Column<&tblSafeSearchParameter::repeat_on_each_request>("repeat_on_each_request"),
    Column<&tblSafeSearchParameter::row_version>("row_version"),
};

}  // namespace

const wexpol::Table& CSafeSearchParameter::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("safe_search_parameters", "safe_search_parameter", kColumns);
  return table;
}

bool CSafeSearchParameter::SpecialGetFromDB(std::list<CSafeSearchParameter*>& out, sqlite3* db,
                                            std::string* error) {
  std::string unused;
  return wexpol::ListRecords(db, out, nullptr, 0, error ? *error : unused, "search_url DESC");
}
