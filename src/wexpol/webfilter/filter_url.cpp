#include "wexpol/webfilter/filter_url.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblFilterUrl::id>("id", wexpol::kKey),
    Column<&tblFilterUrl::filter_setting_id>("filter_setting_id"),
    Column<&tblFilterUrl::url>("url"),
    Column<&tblFilterUrl::allowed>("allowed"),
};

}  // namespace

CFilterUrl::CFilterUrl(long filterSettingId, const char* ruleUrl, bool isAllowed) {
  filter_setting_id = static_cast<std::int32_t>(filterSettingId);
  url = ruleUrl;
  allowed = isAllowed;
}

const wexpol::Table& CFilterUrl::Table() {
  static const wexpol::Table& table = *new wexpol::Table("filter_urls", "filter_url", kColumns);
  return table;
}
