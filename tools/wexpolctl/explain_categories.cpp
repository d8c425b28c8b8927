// wexpolctl explain --category: which row decides the web filter's questions.

#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/explain.h"
#include "wexpol/platform/text.h"
#include "wexpol/records/scopes.h"
#include "wexpol/records/statement.h"
#include "wexpol/webfilter/category.h"

namespace wexpolctl {
namespace {

using Names = std::set<std::wstring>;

// The names are looked at in their order until one decides, so it is the last of the fewest that
// give the answer.
std::wstring DecidingName(sqlite3* db, const Names& names,
                          bool (*ask)(sqlite3* db, const Names& names)) {
  Names first;
  for (const std::wstring& name : names) {
    first.insert(name);
    if (ask(db, first)) return name;
  }
  return {};
}

void AddCategory(sqlite3* db, const std::wstring& name, Listing& categories, Listing& rules) {
  const std::string bound = wexpol::WideToUtf8(name);
  wexpol::Statement select(
      db, "SELECT id, category_type_id, is_pornography, row_version FROM categories WHERE name=?",
      bound);
  const bool known = select.StepRow();
  const auto cell = [&](int column) {
    return known && !select.IsNull(column) ? Number(select.Int64(column)) : Nothing();
  };
  categories.Add({Text(name), cell(0), cell(1), cell(2), cell(3)});
  if (!known || select.IsNull(0)) return;
  wexpol::Statement rows(
      db,
      "SELECT c.id, c.filter_setting_id, p.policy_id, c.filter_action_id FROM filter_categories c "
      "LEFT JOIN filter_settings s ON s.id=c.filter_setting_id "
      "LEFT JOIN policy_services p ON p.id=s.policy_service_id WHERE c.category_id=?",
      select.Int(0));
  while (rows.StepRow()) {
    std::vector<Cell> row = {Text(name)};
    for (int i = 0; i < 4; ++i) row.push_back(rows.IsNull(i) ? Nothing() : Number(rows.Int(i)));
    rules.Add(std::move(row));
  }
}

}  // namespace

ExitCode ExplainCategories(Call& call) {
  Names names;
  for (const std::string& name : call.options.Texts("--category")) {
    names.insert(wexpol::Utf8ToWide(name));
  }
  Database database(call.database, Database::kAsk);
  sqlite3* db = database.handle();
  const wexpol::ReadScope scope(db);
  Listing& categories = call.report.AddListing(
      "categories", {"category", "id", "type", "is pornography", "row version"});
  Listing& questions = call.report.AddListing("questions", {"question", "answer", "decided by"});
  Listing& rules =
      call.report.AddListing("rules", {"category", "row", "filter setting", "policy", "action"});
  for (const std::wstring& name : names) AddCategory(db, name, categories, rules);
  constexpr struct {
    const char* question;
    bool (*ask)(sqlite3* db, const Names& names);
  } kQuestions[] = {{"any of movies and television", &CCategory::AnyMoviesAndTvCategories},
                    {"any pornographic", &CCategory::IsPornCategoryPresent}};
  for (const auto& [question, ask] : kQuestions) {
    const std::wstring name = DecidingName(db, names, ask);
    questions.Add({Text(question), Flag(ask(db, names)), name.empty() ? Nothing() : Text(name)});
  }
  return kDone;
}

}  // namespace wexpolctl
