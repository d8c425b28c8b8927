#include "wexpol/webfilter/filter_setting.h"

#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

using Schedule = wexpol::BytesCoding<84>;

struct WholeSchedule : Schedule {
  // Only a text can be malformed; null and whatever else is no schedule, and leaves the field.
  static bool Parse(const rapidjson::Value& value, Field& field) {
    return !value.IsString() || Schedule::Parse(value, field);
  }
  // A blob of any other size than the schedule's is none.
  static void Copy(sqlite3_stmt* row, int column, Field& field) {
    if (sqlite3_column_bytes(row, column) == sizeof field) Schedule::Copy(row, column, field);
  }
};
constexpr auto kSchedule = wexpol::MakeCodec<WholeSchedule>();

constexpr wexpol::ColumnDef kColumns[] = {
    Column<&tblFilterSetting::id>("id", wexpol::kKey | wexpol::kRequired),
    Column<&tblFilterSetting::policy_service_id>("policy_service_id"),
    Column<&tblFilterSetting::password_override>("password_override"),
    Column<&tblFilterSetting::block_uncategorized>("block_uncategorized"),
    Column<&tblFilterSetting::allow_list_only>("allow_list_only"),
    Column<&tblFilterSetting::image_filter>("image_filter"),
    Column<&tblFilterSetting::allow_from_referral>("allow_from_referral"),
    Column<&tblFilterSetting::safety_lock>("safety_lock"),
    Column<&tblFilterSetting::force_safe_search>("force_safe_search"),
    Column<&tblFilterSetting::schedule>("schedule", kSchedule, wexpol::kWellFormed),
    Column<&tblFilterSetting::icat>("icat"),
};

}  // namespace

const wexpol::Table& CFilterSetting::Table() {
  static const wexpol::Table& table =
      *new wexpol::Table("filter_settings", "filter_setting", kColumns);
  return table;
}
