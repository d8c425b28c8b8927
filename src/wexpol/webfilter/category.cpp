#include "wexpol/webfilter/category.h"

#include "wexpol/records/query.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblCategory::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblCategory::name>("name"),
    Column<&tblCategory::description>("description"),
    Column<&tblCategory::notification>("notification"),
    Column<&tblCategory::category_type_id>("category_type_id"),
    Column<&tblCategory::client_should_cache>("client_should_cache"),
    Column<&tblCategory::is_search_engine>("is_search_engine"),
    Column<&tblCategory::is_pornography>("is_pornography"),
    Column<&tblCategory::is_advertisement>("is_advertisement"),
    Column<&tblCategory::is_icat>("is_icat"),
    Column<&tblCategory::is_google_malware>("is_google_malware"),
    Column<&tblCategory::is_google_phishing>("is_google_phishing"),
    Column<&tblCategory::is_se_keyword>("is_se_keyword"),
    Column<&tblCategory::row_version>("row_version"),
};

// Asks for a number of each named category, in the order of the names, until `is_hit` says yes. A
// NULL counts as the number before it.
template <typename IsHit>
bool AnyNamed(sqlite3* db, wexpol::Sql sql, const std::set<std::wstring>& names, IsHit is_hit) {
  const wexpol::ReadScope read(db);
  wexpol::Statement select(db, sql);
  std::int32_t value = 0;
  for (const std::wstring& name : names) {
    // The empty name matches no category, not even one without a name.
    if (select.ok()) select.Bind(1, name.empty() ? nullptr : name.c_str());
    if (select.StepRow()) {
      if (!select.IsNull(0)) value = select.Int(0);
      if (is_hit(value)) return true;
    }
    if (!select.ok()) return false;
    select.Reset();
  }
  return false;
}

}  // namespace

const wexpol::Table& CCategory::Table() {
  static const wexpol::Table& table = *new wexpol::Table("categories", "category", kColumns);
  return table;
}

bool CCategory::AnyMoviesAndTvCategories(sqlite3* db, const std::set<std::wstring>& names) {
  return AnyNamed(db, "SELECT category_type_id FROM categories WHERE name=?", names,
                  [](std::int32_t type) {
                    const auto type16 = static_cast<std::int16_t>(type);
                    return type16 >= 2 && type16 <= 5;
                  });
}

bool CCategory::IsPornCategoryPresent(sqlite3* db, const std::set<std::wstring>& names) {
  return AnyNamed(db, "SELECT is_pornography FROM categories WHERE name=?", names,
                  [](std::int32_t flag) { return flag != 0; });
}

bool CCategory::GetNoCacheCategories(std::string& out, sqlite3* db) {
  out.clear();
  wexpol::Statement select(db, "SELECT id FROM categories WHERE client_should_cache==0");
  std::int32_t category = 0;
  int code;
  while ((code = select.Step()) == SQLITE_ROW) {
    if (!select.IsNull(0)) category = select.Int(0);  // A NULL repeats the id before it.
    out += static_cast<char>(category & 0xFF);
  }
  return code == SQLITE_DONE && !out.empty();
}
