#include "webfilter/filter_url.h"

#include "records/table.h"

namespace {

using records::Column;

constexpr records::ColumnDef kColumns[] = {
    Column<&tblFilterUrl::id>("id", records::kKey),
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

const records::Table& CFilterUrl::Table() {
  static const records::Table& table = *new records::Table("filter_urls", "filter_url", kColumns);
  return table;
}
